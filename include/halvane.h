/* Halvane for programs: writes facts of a map into an XML document whose shape a control file prescribes.
 *
 * The C interface of the shared library libhalvane. It is stable: a program that was linked with one version
 * of libhalvane.so.0 runs with later ones. Link with `pkg-config --libs halvane`, or with the target
 * Halvane::halvane.
 *
 *     halvane_export* pExport = halvane_export_new("countries.xml", "out.xml");
 *     halvane_export_set_map(pExport, "world.gpkg");
 *     if (halvane_export_run(pExport) != HALVANE_WRITTEN)
 *         fprintf(stderr, "%s\n", halvane_export_error(pExport));
 *     halvane_export_free(pExport);
 *
 * Texts. What is passed in ends with a null byte and is copied. Paths are bytes as the file system has them,
 * relative ones are taken from the current folder; other texts are UTF-8. What is handed out is UTF-8, ends
 * with a null byte, is never NULL and belongs to its object: it stays until the object is run again or freed.
 * Passwords in it are masked. Messages name an input by the option of the program that stands for it: --map
 * is the map.
 *
 * Errors. No function throws, ends the process or writes to the standard streams (a library beneath may write
 * to standard error itself). A function that sets something returns 0, or -1 when it could not: an argument
 * is NULL where a text is needed or out of its range, or there is no memory. The object remembers that, and
 * each run of it is refused with the reason from then on. A NULL object is refused everywhere and does no
 * harm.
 *
 * Threads. Each object is for one thread at a time; only the functions …_cancel may be called on any thread
 * meanwhile. Objects on several threads are independent, but their runs take turns: one waits until the other
 * has ended. What is called back is called on the thread that runs; it must not throw or jump out, and must
 * not run an object, which is refused, nor free its own. What it sets of its own is for the next run. A run
 * starts threads of its own and ends them.
 *
 * The process. The first run loads the drivers of GDAL that Halvane uses and sets options of GDAL for the
 * whole process: nothing is reached over the network but the servers that a map document names, GDAL's own
 * messages are silenced. Signals are left as they are: where the process has a limit for the size of files,
 * it has to ignore SIGXFSZ, and SIGPIPE where it reads from a server. libhalvane stays loaded once it is
 * loaded. */

#ifndef HALVANE_H
#define HALVANE_H

#include <stdint.h> /* NOLINT(*-deprecated-headers): C reads this, too */

#if defined(__GNUC__)
#define HALVANE_API __attribute__((visibility("default")))
#else
#define HALVANE_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* What became of a run; the same numbers as the exit codes of the program `halvane`. */
enum {
    HALVANE_WRITTEN = 0,    /* all was written, or described */
    HALVANE_REFUSED = 2,    /* an input is not fit; nothing was started */
    HALVANE_INCOMPLETE = 3, /* the document stands, but something of it failed: see the report */
    HALVANE_NOT_WRITTEN = 4 /* nothing was written, an older document is untouched; also after a cancel */
};

/* How much a message matters. */
enum {
    HALVANE_RESULT = 0, /* what was written */
    HALVANE_NOTE = 1,   /* nothing failed, but it is worth knowing */
    HALVANE_FAILURE = 2 /* what failed */
};

/* "0.2.0": the version of the library that is loaded. Stays as long as the process. */
HALVANE_API const char* halvane_version(void);

/* Told how far a run is: at the first item, then at most ten times a second, and at the end.
 * items: how many were written so far. user: as it was set.
 * Returns 0 to go on; any other number cancels the run. The last call comes too late for that. */
typedef int (*halvane_progress)(void* user, uint64_t items);

/* Told what a person should know: the lines that the program writes on a terminal, long lists cut as there.
 * level: HALVANE_RESULT, HALVANE_NOTE or HALVANE_FAILURE. text: one line without its end; stays during the
 * call. */
typedef void (*halvane_message)(void* user, int level, const char* text);

/* An export: what to read and where to write, and after a run what became of it. */
typedef struct halvane_export halvane_export;

/* control: the control file's path, or its URL (http, https, file). output: the path of the document; its
 * folder exists. It gets ".xml" appended unless its name holds the letters XML. Returns NULL only where there
 * is no memory. To be freed with halvane_export_free(). */
HALVANE_API halvane_export* halvane_export_new(const char* control, const char* output);
/* Frees an export that does not run. NULL is allowed. */
HALVANE_API void halvane_export_free(halvane_export* pExport);

/* A map document, a QGIS project, or any dataset or folder: a map of all its layers and tables. NULL: none,
 * as at first. */
HALVANE_API int halvane_export_set_map(halvane_export* pExport, const char* map);
/* Whether a QGIS project may name databases of servers, which are then read: 1, or 0, as at first. */
HALVANE_API int halvane_export_allow_connections(halvane_export* pExport, int allow);
/* A second document, whose nodes at an XPath pair tag names with aliases. NULL twice: none, as at first. */
HALVANE_API int halvane_export_set_tags(halvane_export* pExport, const char* document, const char* node_path);
/* Selects features of a layer of the map: "LAYER=FIDS" or "LAYER=WHERE", as in "Cities=4,8" or "Cities=POP >
 * 1000". Each call selects in one more layer. */
HALVANE_API int halvane_export_select(halvane_export* pExport, const char* selection);
/* Loads a library of external processors when the export runs; it stays loaded. Repeatable. It runs code of
 * that library in this process. */
HALVANE_API int halvane_export_add_processor(halvane_export* pExport, const char* library);
/* Ends a repeated node with an error once it has written more than so many items; from 1 on. At first there
 * is no limit. */
HALVANE_API int halvane_export_set_item_limit(halvane_export* pExport, int64_t items);
/* Whether a run waits until the document is on the disk: 1, as at first, or 0. */
HALVANE_API int halvane_export_set_sync(halvane_export* pExport, int sync);
/* NULL: nobody is told, as at first. user is passed on as it is. */
HALVANE_API int halvane_export_on_progress(halvane_export* pExport, halvane_progress callback, void* user);
HALVANE_API int halvane_export_on_message(halvane_export* pExport, halvane_message callback, void* user);

/* Exports. May be called again.
 * Returns HALVANE_WRITTEN, HALVANE_REFUSED, HALVANE_INCOMPLETE or HALVANE_NOT_WRITTEN. */
HALVANE_API int halvane_export_run(halvane_export* pExport);
/* Ends the run under way as soon as it can; without one, the next. The document is then as it was before. On
 * any thread, also from what is called back; not from a signal's handler. */
HALVANE_API void halvane_export_cancel(halvane_export* pExport);

/* Why the last run was refused or wrote nothing, a line for each reason; "" after another run. */
HALVANE_API const char* halvane_export_error(const halvane_export* pExport);
/* All that became of the last run, as JSON in the form of report.schema.json; "" before the first one, and
 * where there was no memory for it. */
HALVANE_API const char* halvane_export_report(const halvane_export* pExport);

/* A description: everything that a control file could name in a map. */
typedef struct halvane_description halvane_description;

/* map: a map document, a QGIS project, or any dataset or folder. Returns NULL only where there is no memory.
 */
HALVANE_API halvane_description* halvane_description_new(const char* map);
/* Frees a description that does not run. NULL is allowed. */
HALVANE_API void halvane_description_free(halvane_description* pDescription);
/* As halvane_export_allow_connections(). */
HALVANE_API int halvane_description_allow_connections(halvane_description* pDescription, int allow);
/* NULL: nobody is told, as at first. */
HALVANE_API int halvane_description_on_message(halvane_description* pDescription, halvane_message callback,
                                               void* user);
/* Describes. What cannot be read says so in its place. May be called again.
 * Returns HALVANE_WRITTEN, HALVANE_REFUSED when the map cannot be opened, or HALVANE_NOT_WRITTEN. */
HALVANE_API int halvane_description_run(halvane_description* pDescription);
/* As halvane_export_cancel(). */
HALVANE_API void halvane_description_cancel(halvane_description* pDescription);
/* Why the last run described nothing; "" when it did. */
HALVANE_API const char* halvane_description_error(const halvane_description* pDescription);
/* The description as JSON in the form of describe.schema.json; "" where there is none. */
HALVANE_API const char* halvane_description_json(const halvane_description* pDescription);

#ifdef __cplusplus
}
#endif

#endif
