/* VokCubeQ17 for C programs: run saved cube queries into Excel workbooks.
 *
 *   #include <vokcubeq17_c.h>
 *
 *   vokcube *cube = vokcube_new();
 *   if (vokcube_run(cube, "Sales", "2024", "/reports/sales") != 0) {
 *     char cause[1000];
 *     vokcube_cause(cube, cause, sizeof cause);
 *     fprintf(stderr, "%s\n", cause);
 *   }
 *   vokcube_free(cube);
 *
 * Link with -lvokcubeq17. Texts are UTF-8 and end with a NUL. A function that gives a text writes
 * as much of it as `size` bytes hold, the NUL among them, and returns the length of all of it
 * without the NUL; `buffer` may be NULL when `size` is 0. A text that is asked for but is not there
 * is "".
 *
 * Nothing is thrown across these functions. One handle serves one thread at a time, except for
 * vokcube_stop; several threads have a handle each. Their calls take turns: settings and the last
 * cube's dates are one set of values per process, so a call waits while another thread's is in
 * progress. A call inside another one of its thread, such as from the handler of a message, would
 * wait for itself and fails at once with 6666. */
#ifndef VOKCUBEQ17_C_H
#define VOKCUBEQ17_C_H

#include <stddef.h>  // NOLINT: C
#include <stdint.h>  // NOLINT: C

#ifdef __cplusplus
extern "C" {
#endif

typedef struct vokcube vokcube;

/* NULL when there is no memory. */
vokcube* vokcube_new(void);
/* No call of the handle is in progress. NULL does nothing. */
void vokcube_free(vokcube* cube);

/* "16.8.28": major, minor and revision. It lasts as long as the program. */
const char* vokcube_version(void);

/* The settings folder of the process, in place of what the registry says; "" or NULL: what that
 * says. Returns 0 or the number of the failure. */
int32_t vokcube_use_settings_folder(vokcube* cube, const char* folder);

/* Runs the data source for the period set and writes the workbook `output` + ".xlsX". Returns 0,
 * also when there was nothing to write, or the number of the failure: 1111 there is no settings
 * database, 2222 the settings cannot be read, 3333 no connection to the cube, 4444 its dates cannot
 * be read, 5555 it has not got a measure of the settings, or another one. */
int32_t vokcube_run(vokcube* cube, const char* data_source, const char* periods,
                    const char* output);
/* From any thread: ends the run that the handle is in, with VOKCUBE_STOPPED; nothing is written. */
#define VOKCUBE_STOPPED (-2147217842)
void vokcube_stop(vokcube* cube);

/* Of the last vokcube_run of the handle: rows written without the labels, the workbook's path (""
 * when none was written), how long it took. */
uint64_t vokcube_rows(const vokcube* cube);
size_t vokcube_workbook(const vokcube* cube, char* buffer, size_t size);
uint32_t vokcube_milliseconds(const vokcube* cube);

/* Of the handle's last call that can fail: its number, 0 for none, and why, on one line. */
int32_t vokcube_code(const vokcube* cube);
size_t vokcube_cause(const vokcube* cube, char* buffer, size_t size);

/* Reads the names that are saved in a table, "DataSourceInfo" or "Periods", into the handle, in
 * place of those of the last call. Returns 0 or the number of the failure, which leaves none. */
int32_t vokcube_list(vokcube* cube, const char* table);
size_t vokcube_count(const vokcube* cube);
size_t vokcube_name(const vokcube* cube, size_t index, char* buffer, size_t size);

/* Where the messages of the process go, instead of standard error: NULL for that again. Called on
 * the threads whose calls have something to say, by one at a time. */
typedef void vokcube_message(void* context, const char* title, const char* text);
void vokcube_show_messages(vokcube_message* show, void* context);

/* From the next run of the handle on: each step as it begins ("settings", "cube", "query",
 * "workbook") and how much was done before it, from 0 to 1, an estimate; at the end ("", 1). Called
 * on the run's thread; it may call vokcube_stop and nothing else. NULL for nobody. */
typedef void vokcube_progress(void* context, const char* step, double done);
void vokcube_show_progress(vokcube* cube, vokcube_progress* show, void* context);

#ifdef __cplusplus
}
#endif

#endif
