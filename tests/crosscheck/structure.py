#!/usr/bin/env python3
"""Fields, domains, subtypes and relationship classes of a GeoPackage, against SQL on the tables that hold them."""
import re

import support

TYPE_LITERALS = {"INTEGER": "Integer", "MEDIUMINT": "Integer", "SMALLINT": "SmallInteger", "TINYINT": "Integer",
                 "BOOLEAN": "SmallInteger", "DOUBLE": "Double", "FLOAT": "Single", "TEXT": "String", "DATE": "Date",
                 "DATETIME": "Date", "BLOB": "Blob"}
DOMAINS = """<T Name="Domains">
  <L Name="Layer" DataSource="MapLayer" Identity="LayerName" IdentityValue="roads">
    <Each Name="Domain" DataSource="WorkspaceDomain" Entries="Multiple">
      <P Name="name" Target="Attribute" DataProperty="DomainName"/>
      <P Name="description" Target="Attribute" DataProperty="DomainDescription"/>
      <P Name="field" Target="Attribute" DataProperty="DomainFieldType"/>
      <P Name="type" Target="Attribute" DataProperty="DomainType"/>
      <P Name="merge" Target="Attribute" DataProperty="DomainMergePolicy"/>
      <P Name="split" Target="Attribute" DataProperty="DomainSplitPolicy"/>
      <P Name="min" Target="Attribute" DataProperty="DomainRangeMin"/>
      <P Name="max" Target="Attribute" DataProperty="DomainRangeMax"/>
      <Codes Name="Codes" DataProperty="DomainCodedValues">
        <Code Name="Code" Entries="Multiple">
          <P Name="value" Target="Attribute" DataProperty="DomainCodeValue"/>
          <P Name="name" Target="Attribute" DataProperty="DomainCodeName"/>
        </Code>
      </Codes>
    </Each>
  </L>
</T>"""
RELATIONSHIPS = """<T Name="Relationships">
  <L Name="Layer" DataSource="MapLayer" Identity="LayerName" IdentityValue="roads">
    <Each Name="Class" DataSource="Relationship" Entries="Multiple">
      """ + "".join(f"<P Name='{name}' Target='Attribute' DataProperty='{name}'/>" for name in (
          "RelationshipName", "Cardinality", "IsComposite", "IsAttibuted", "OriginClassName", "OriginPrimaryKey",
          "OriginForeignKey", "DestinationClassName", "DestinationPrimaryKey", "DestinationForeignKey",
          "Notification", "FeatureDataset")) + """
    </Each>
  </L>
</T>"""
FIELDS = """<T Name="Structure">
  <L Name="Layer" DataSource="MapLayer" Identity="LayerName" IdentityValue="roads">
    <All Name="Fields" DataSource="Field" Entries="Multiple">
      <Each Name="Field">""" + "".join(f"<P Name='{name}' Target='Attribute' DataProperty='{name}'/>" for name in (
          "FieldName", "FieldAlias", "FieldType", "FieldLength", "FieldIsNull", "FieldEditable")) + """</Each>
    </All>
    <Each Name="Subtype" DataSource="SubType" Entries="Multiple">
      <P Name="Code" DataProperty="SubTypeCode"/>
      <P Name="Name" DataProperty="SubTypeName"/>
      <P Name="Field" DataProperty="SubTypeFieldName"/>
      <P Name="Default" DataProperty="DefaultSubTypeCode"/>
    </Each>
  </L>
</T>"""


class Structure(support.CrossCheck):
    def setUp(self):
        super().setUp()
        self.file = self.make(self.folder / "roads.gpkg", support.DATA / "shapes.csv", "shapes", "-f", "GPKG",
                              "-nln", "roads", "-nlt", "LINESTRING", "-where", "kind = 'line'", "-select", "id",
                              "-a_srs", "EPSG:25832", "-lco", "SPATIAL_INDEX=NO")
        support.run("sqlite3", self.file, stdin=(support.DATA / "structure.sql").read_bytes())

    def sql(self, statement):
        return support.sql(self.file, statement)

    def columns(self):
        return self.sql("SELECT name, upper(type), \"notnull\", dflt_value, pk FROM pragma_table_info('roads')")

    def domains_by_name(self):
        return {domain.get("name"): domain for domain in self.export(DOMAINS, self.file).iter("Domain")}

    def test_domains_come_in_the_order_in_which_they_were_defined(self):
        expected = self.sql("SELECT constraint_name FROM gpkg_data_column_constraints GROUP BY 1 ORDER BY min(rowid)")
        self.assertEqual(list(self.domains_by_name()), [name for name, in expected])
        self.assertEqual([domain["name"] for domain in self.describe(self.file)["workspaces"][0]["domains"]],
                         [name for name, in expected])

    def test_codes_come_in_the_order_of_their_rows(self):
        domains = self.domains_by_name()
        described = {domain["name"]: domain for domain in self.describe(self.file)["workspaces"][0]["domains"]}
        for name, in self.sql("SELECT DISTINCT constraint_name FROM gpkg_data_column_constraints WHERE "
                              "constraint_type = 'enum'"):
            expected = self.sql("SELECT value, description FROM gpkg_data_column_constraints WHERE constraint_name = "
                                f"'{name}' ORDER BY rowid")
            found = [[code.get("value"), code.get("name")] for code in domains[name].findall("Codes/Code")]
            self.assertEqual(found, expected, name)
            self.assertEqual([[code["code"], code["name"]] for code in described[name]["codes"]], expected, name)
            self.assertEqual(domains[name].get("type"), "vemiDTCodedValue")

    def test_ranges_have_their_bounds(self):
        domains = self.domains_by_name()
        rows = self.sql("SELECT constraint_name, min, max, description FROM gpkg_data_column_constraints WHERE "
                        "constraint_type = 'range'")
        self.assertEqual(len(rows), 3)
        for name, lower, upper, description in rows:
            domain = domains[name]
            self.assertEqual((float(domain.get("min")), float(domain.get("max"))), (lower, upper), name)
            self.assertEqual(domain.get("type"), "vemiDTRange", name)
            self.assertEqual(domain.get("description"), description or "", name)
            self.assertEqual((domain.get("merge"), domain.get("split")), ("0", "0"))

    def test_patterns_are_text_domains_without_codes(self):
        domain = self.domains_by_name()["post code"]
        self.assertEqual(domain.get("type"), "vemiDTString")
        self.assertEqual(domain.findall("Codes/Code"), [])

    def test_a_domain_has_the_type_of_the_field_that_uses_it(self):
        domains = self.domains_by_name()
        users = self.sql("SELECT d.constraint_name, c.type FROM gpkg_data_columns d JOIN pragma_table_info('roads') c "
                         "ON c.name = d.column_name WHERE d.constraint_name IS NOT NULL")
        self.assertEqual(len(users), 4)
        for name, kind in users:
            self.assertEqual(domains[name].get("field"), "vemiFieldType" + TYPE_LITERALS[kind.partition("(")[0]], name)

    def test_fields_have_name_type_length_and_nullability_of_the_columns(self):
        fields = self.export(FIELDS, self.file).findall("Layer/Fields/Field")
        columns = self.columns()
        self.assertEqual([field.get("FieldName") for field in fields], [name for name, *_ in columns])
        for field, (name, kind, required, _, key) in zip(fields, columns):
            if key:
                self.assertEqual(field.get("FieldType"), "vemiFieldTypeOID")
            elif kind == "LINESTRING":
                self.assertEqual(field.get("FieldType"), "vemiGeometryPolyline")
            else:
                self.assertEqual(field.get("FieldType"), "vemiFieldType" + TYPE_LITERALS[kind.partition("(")[0]], name)
                length = re.search(r"\((\d+)\)", kind)
                self.assertEqual(field.get("FieldLength"), length[1] if length else "0", name)
                self.assertEqual(field.get("FieldEditable"), "True", name)
            self.assertEqual(field.get("FieldIsNull"), "False" if required else "True", name)

    def test_aliases_are_the_titles_else_the_names_of_the_columns(self):
        titles = dict(self.sql("SELECT column_name, coalesce(title, name) FROM gpkg_data_columns"))
        for field in self.export(FIELDS, self.file).findall("Layer/Fields/Field"):
            name = field.get("FieldName")
            self.assertEqual(field.get("FieldAlias"), titles.get(name) or name)

    def test_fields_have_the_default_values_and_domains_of_their_columns(self):
        support.run("sqlite3", self.file, "DELETE FROM halvane_subtypes")
        fields = {field["name"]: field for field in self.described_layers(self.file)["roads"]["featureClass"]["fields"]}
        domains = dict(self.sql("SELECT column_name, constraint_name FROM gpkg_data_columns"))
        for name, kind, _, default, _ in self.columns():
            with self.subTest(field=name):
                self.assertEqual(fields[name]["domain"], domains.get(name))
                plain = self.sql(f"SELECT {default} AS v")[0][0] if default else None
                if kind == "DATE" and plain:
                    plain = "{1}/{2}/{0}".format(*plain.split("-"))
                self.assertEqual(fields[name]["default"], None if plain is None else str(plain))

    def test_subtypes_are_the_rows_of_their_tables(self):
        expected = self.sql("SELECT code, name, field_name, (SELECT code FROM halvane_subtypes WHERE is_default = 1) d "
                            "FROM halvane_subtypes ORDER BY id")
        found = [[int(subtype.findtext("Code")), subtype.findtext("Name"), subtype.findtext("Field"),
                  int(subtype.findtext("Default"))] for subtype in self.export(FIELDS, self.file).iter("Subtype")]
        self.assertEqual(found, expected)

    def test_a_subtypes_own_domains_and_default_values_replace_those_of_the_field(self):
        subtypes = self.described_layers(self.file)["roads"]["featureClass"]["subtypes"]["subtypes"]
        own = {(code, field): (domain, default) for code, field, domain, default in
               self.sql("SELECT code, field_name, domain_name, default_value FROM halvane_subtype_fields")}
        domains = dict(self.sql("SELECT column_name, constraint_name FROM gpkg_data_columns"))
        found = {(subtype["code"], field["name"]): (field["domain"], field["default"])
                 for subtype in subtypes for field in subtype["fields"]}
        for (code, field), (domain, default) in own.items():
            self.assertEqual(found[code, field][0], domain or domains.get(field), (code, field))
            if default is not None:
                self.assertEqual(found[code, field][1], default)

    def test_own_and_system_tables_are_not_listed(self):
        described = self.describe(self.file)["maps"][0]
        expected = self.sql("SELECT table_name FROM gpkg_contents ORDER BY 1")
        self.assertEqual(sorted([layer["name"] for layer in described["layers"]] +
                                [table["dataset"] for table in described["tables"]]),
                         [name for name, in expected])

    def expected_foreign_keys(self):
        """(origin, its keys, destination, foreign keys, composite) as the database tells them."""
        keys = {}
        for child, number, parent, column, target, action in self.sql(
                "SELECT m.name, k.id, k.\"table\", k.\"from\", k.\"to\", k.on_delete FROM sqlite_master m JOIN "
                "pragma_foreign_key_list(m.name) k WHERE m.type = 'table' AND m.name NOT GLOB 'gpkg*' ORDER BY k.seq"):
            key = keys.setdefault((child, number), [parent, [], child, [], "True" if action == "CASCADE" else "False"])
            key[1].append(target)
            key[3].append(column)
        for key in keys.values():
            if None in key[1]:
                key[1] = [name for name, in self.sql(f"SELECT name FROM pragma_table_info('{key[0]}') WHERE pk > 0 "
                                                     "ORDER BY pk")]
        return sorted((key[0], ",".join(key[1]), key[2], ",".join(key[3]), key[4]) for key in keys.values())

    def test_foreign_keys_are_relationship_classes_of_one_to_many(self):
        classes = [element.attrib for element in self.export(RELATIONSHIPS, self.file).iter("Class")
                   if element.get("Cardinality") == "vemiRelCardinalityOneToMany"]
        found = sorted((each["OriginClassName"], each["OriginPrimaryKey"], each["DestinationClassName"],
                        each["OriginForeignKey"], each["IsComposite"]) for each in classes)
        self.assertEqual(found, self.expected_foreign_keys())
        self.assertEqual(len(found), 7)
        for each in classes:
            self.assertTrue(each["RelationshipName"].startswith(
                each["OriginClassName"] + "_" + each["DestinationClassName"]), each["RelationshipName"])
            self.assertEqual((each["DestinationPrimaryKey"], each["DestinationForeignKey"], each["IsAttibuted"],
                              each["FeatureDataset"]), ("", "", "False", ""))
        self.assertEqual(len({each["RelationshipName"] for each in classes}), 7)

    def test_related_tables_are_relationship_classes_of_many_to_many(self):
        classes = [element.attrib for element in self.export(RELATIONSHIPS, self.file).iter("Class")
                   if element.get("Cardinality") == "vemiRelCardinalityManyToMany"]
        found = sorted((each["OriginClassName"], each["OriginPrimaryKey"], each["OriginForeignKey"],
                        each["DestinationClassName"], each["DestinationPrimaryKey"], each["DestinationForeignKey"],
                        each["IsComposite"]) for each in classes)
        expected = sorted((base, key, "base_id", related, related_key, "related_id", "False")
                          for base, key, related, related_key in self.sql(
                              "SELECT base_table_name, base_primary_column, related_table_name, related_primary_column "
                              "FROM gpkgext_relations"))
        self.assertEqual(found, expected)
        attributed = {each["OriginClassName"]: each["IsAttibuted"] for each in classes}
        for base, table in self.sql("SELECT base_table_name, mapping_table_name FROM gpkgext_relations"):
            more = self.sql(f"SELECT name FROM pragma_table_info('{table}') WHERE pk = 0 AND name NOT IN ('base_id', "
                            "'related_id')")
            self.assertEqual(attributed[base], str(bool(more)), base)


if __name__ == "__main__":
    support.main()
