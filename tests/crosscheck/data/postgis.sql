--
-- PostgreSQL database dump
--


-- Dumped from database version 15.18 (Debian 15.18-0+deb12u1)
-- Dumped by pg_dump version 15.18 (Debian 15.18-0+deb12u1)

SET statement_timeout = 0;
SET lock_timeout = 0;
SET idle_in_transaction_session_timeout = 0;
SET client_encoding = 'UTF8';
SET standard_conforming_strings = on;
SELECT pg_catalog.set_config('search_path', '', false);
SET check_function_bodies = false;
SET xmloption = content;
SET client_min_messages = warning;
SET row_security = off;

--
-- Name: city; Type: SCHEMA; Schema: -; Owner: -
--

CREATE SCHEMA city;


SET default_tablespace = '';

SET default_table_access_method = heap;

--
-- Name: areas; Type: TABLE; Schema: city; Owner: -
--

CREATE TABLE city.areas (
    gid integer NOT NULL,
    name character varying(60),
    whole double precision,
    large numeric,
    "real" numeric,
    day date,
    moment character varying(24),
    yes smallint,
    shape public.geometry(MultiPolygonZM,25832)
);


--
-- Name: areas_gid_seq; Type: SEQUENCE; Schema: city; Owner: -
--

CREATE SEQUENCE city.areas_gid_seq
    AS integer
    START WITH 1
    INCREMENT BY 1
    NO MINVALUE
    NO MAXVALUE
    CACHE 1;


--
-- Name: areas_gid_seq; Type: SEQUENCE OWNED BY; Schema: city; Owner: -
--

ALTER SEQUENCE city.areas_gid_seq OWNED BY city.areas.gid;


--
-- Name: heights; Type: TABLE; Schema: city; Owner: -
--

CREATE TABLE city.heights (
    gid integer NOT NULL,
    name character varying(60),
    whole double precision,
    large numeric,
    "real" numeric,
    day date,
    moment character varying(24),
    yes smallint,
    shape public.geometry(PointZM,25832)
);


--
-- Name: heights_gid_seq; Type: SEQUENCE; Schema: city; Owner: -
--

CREATE SEQUENCE city.heights_gid_seq
    AS integer
    START WITH 1
    INCREMENT BY 1
    NO MINVALUE
    NO MAXVALUE
    CACHE 1;


--
-- Name: heights_gid_seq; Type: SEQUENCE OWNED BY; Schema: city; Owner: -
--

ALTER SEQUENCE city.heights_gid_seq OWNED BY city.heights.gid;


--
-- Name: notes; Type: TABLE; Schema: city; Owner: -
--

CREATE TABLE city.notes (
    id integer NOT NULL,
    way integer NOT NULL,
    written timestamp without time zone,
    words text
);


--
-- Name: ways; Type: TABLE; Schema: city; Owner: -
--

CREATE TABLE city.ways (
    gid integer NOT NULL,
    name character varying(60),
    whole double precision,
    large bigint,
    "real" numeric,
    day date,
    moment character varying(24),
    yes smallint,
    shape public.geometry(MultiLineString,25832),
    area integer
);


--
-- Name: COLUMN ways.name; Type: COMMENT; Schema: city; Owner: -
--

COMMENT ON COLUMN city.ways.name IS 'Name of the way';


--
-- Name: ways_gid_seq; Type: SEQUENCE; Schema: city; Owner: -
--

CREATE SEQUENCE city.ways_gid_seq
    AS integer
    START WITH 1
    INCREMENT BY 1
    NO MINVALUE
    NO MAXVALUE
    CACHE 1;


--
-- Name: ways_gid_seq; Type: SEQUENCE OWNED BY; Schema: city; Owner: -
--

ALTER SEQUENCE city.ways_gid_seq OWNED BY city.ways.gid;


--
-- Name: areas gid; Type: DEFAULT; Schema: city; Owner: -
--

ALTER TABLE ONLY city.areas ALTER COLUMN gid SET DEFAULT nextval('city.areas_gid_seq'::regclass);


--
-- Name: heights gid; Type: DEFAULT; Schema: city; Owner: -
--

ALTER TABLE ONLY city.heights ALTER COLUMN gid SET DEFAULT nextval('city.heights_gid_seq'::regclass);


--
-- Name: ways gid; Type: DEFAULT; Schema: city; Owner: -
--

ALTER TABLE ONLY city.ways ALTER COLUMN gid SET DEFAULT nextval('city.ways_gid_seq'::regclass);


--
-- Data for Name: areas; Type: TABLE DATA; Schema: city; Owner: -
--

COPY city.areas (gid, name, whole, large, "real", day, moment, yes, shape) FROM stdin;
1	Ünïcödé 漢字 <&>	-2147483647	9007199254740993	0.100000000000000	2020-02-29	1999/12/31 23:59:58.000	1	01060000E0E86400000300000001030000C0010000000500000000000000000000000000000000000000000000000000F03F000000000000000000000000000000000000000000002440000000000000004000000000000000000000000000002440000000000000244000000000000008400000000000000000000000000000244000000000000000000000000000001040000000000000000000000000000000000000000000000000000000000000F03F000000000000000001030000C00100000004000000000000000000F03F000000000000F03F0000000000001440000000000000000000000000000000400000000000000040000000000000144000000000000000000000000000000040000000000000F03F00000000000014400000000000000000000000000000F03F000000000000F03F0000000000001440000000000000000001030000C001000000040000000000000000003440000000000000344000000000000000000000000000000000000000000000344000000000000035400000000000000000000000000000000000000000000035400000000000003540000000000000000000000000000000000000000000003440000000000000344000000000000000000000000000000000
\.


--
-- Data for Name: heights; Type: TABLE DATA; Schema: city; Owner: -
--

COPY city.heights (gid, name, whole, large, "real", day, moment, yes, shape) FROM stdin;
1	Ünïcödé 漢字 <&>	-2147483647	9007199254740993	0.100000000000000	2020-02-29	1999/12/31 23:59:58.000	1	01010000E0E8640000000000000000F03F00000000000000400000000000000C400000000000001040
2	it's "quoted"	2147483647	-1000000000001	-123456.789000000004307	1899-12-31	2038/01/19 03:14:08.000	0	01010000E0E8640000000000000000F2BF0000000000000040000000000000000000000000000010C0
\.


--
-- Data for Name: notes; Type: TABLE DATA; Schema: city; Owner: -
--

COPY city.notes (id, way, written, words) FROM stdin;
3	1	2020-02-29 12:00:00	Ünïcödé <&>
1	2	\N	\N
2	1	1999-12-31 00:00:00	b
\.


--
-- Data for Name: ways; Type: TABLE DATA; Schema: city; Owner: -
--

COPY city.ways (gid, name, whole, large, "real", day, moment, yes, shape, area) FROM stdin;
2	it's "quoted"	2147483647	-1000000000001	-123456.789000000004307	1899-12-31	2038/01/19 03:14:08.000	0	0105000020E86400000100000001020000000300000000000000000000000000000000000000000000000000F03F000000000000F03F00000000000000400000000000000000	\N
1	Ünïcödé 漢字 <&>	-2147483647	9007199254740993	0.100000000000000	2020-02-29	1999/12/31 23:59:58.000	1	0105000020E86400000200000001020000000200000000000000000000000000000000000000000000000000084000000000000010400102000000030000000000000000002440000000000000244000000000000024400000000000002A400000000000002C400000000000002A40	\N
\.


--
-- Name: areas_gid_seq; Type: SEQUENCE SET; Schema: city; Owner: -
--

SELECT pg_catalog.setval('city.areas_gid_seq', 1, true);


--
-- Name: heights_gid_seq; Type: SEQUENCE SET; Schema: city; Owner: -
--

SELECT pg_catalog.setval('city.heights_gid_seq', 2, true);


--
-- Name: ways_gid_seq; Type: SEQUENCE SET; Schema: city; Owner: -
--

SELECT pg_catalog.setval('city.ways_gid_seq', 2, true);


--
-- Name: areas areas_pkey; Type: CONSTRAINT; Schema: city; Owner: -
--

ALTER TABLE ONLY city.areas
    ADD CONSTRAINT areas_pkey PRIMARY KEY (gid);


--
-- Name: heights heights_pkey; Type: CONSTRAINT; Schema: city; Owner: -
--

ALTER TABLE ONLY city.heights
    ADD CONSTRAINT heights_pkey PRIMARY KEY (gid);


--
-- Name: notes notes_pkey; Type: CONSTRAINT; Schema: city; Owner: -
--

ALTER TABLE ONLY city.notes
    ADD CONSTRAINT notes_pkey PRIMARY KEY (id);


--
-- Name: ways ways_pkey; Type: CONSTRAINT; Schema: city; Owner: -
--

ALTER TABLE ONLY city.ways
    ADD CONSTRAINT ways_pkey PRIMARY KEY (gid);


--
-- Name: areas_shape_idx; Type: INDEX; Schema: city; Owner: -
--

CREATE INDEX areas_shape_idx ON city.areas USING gist (shape);


--
-- Name: heights_shape_idx; Type: INDEX; Schema: city; Owner: -
--

CREATE INDEX heights_shape_idx ON city.heights USING gist (shape);


--
-- Name: ways_shape_idx; Type: INDEX; Schema: city; Owner: -
--

CREATE INDEX ways_shape_idx ON city.ways USING gist (shape);


--
-- Name: notes notes_way_fkey; Type: FK CONSTRAINT; Schema: city; Owner: -
--

ALTER TABLE ONLY city.notes
    ADD CONSTRAINT notes_way_fkey FOREIGN KEY (way) REFERENCES city.ways(gid);


--
-- Name: ways ways_area_fkey; Type: FK CONSTRAINT; Schema: city; Owner: -
--

ALTER TABLE ONLY city.ways
    ADD CONSTRAINT ways_area_fkey FOREIGN KEY (area) REFERENCES city.areas(gid) ON DELETE CASCADE;


--
-- PostgreSQL database dump complete
--


