/* export MAP CONTROL OUTPUT: an export with its progress and what is worth knowing of it. */
#include <halvane.h>
#include <stdio.h>

static int show(void* user, uint64_t items) {
    fprintf((FILE*)user, "%llu items\n", (unsigned long long)items);
    return 0; /* another number would cancel */
}

int main(int argc, char** argv) {
    halvane_export* run = argc == 4 ? halvane_export_new(argv[2], argv[3]) : NULL;
    int outcome;
    halvane_export_set_map(run, argc == 4 ? argv[1] : NULL);
    halvane_export_on_progress(run, show, stderr);
    outcome = halvane_export_run(run);
    if (outcome == HALVANE_WRITTEN || outcome == HALVANE_INCOMPLETE)
        puts(halvane_export_report(run));
    else
        fprintf(stderr, "%s\n", halvane_export_error(run));
    halvane_export_free(run);
    return outcome;
}
