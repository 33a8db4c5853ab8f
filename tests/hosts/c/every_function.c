/* A C program on the installed header and the shared library alone: calls every function and ends
 * with the number of surprises. */
#include <stdio.h>
#include <string.h>
#include <vokcubeq17_c.h>

static int surprises = 0;

static void Expect(int as_expected, const char* what) {
  if (as_expected) return;
  fprintf(stderr, "FAILED: %s\n", what);
  ++surprises;
}

static int messages = 0;

static void Message(void* context, const char* title, const char* text) {
  (void)context;
  messages += strlen(title) > 0 && strstr(text, "Not Found") != NULL;
}

struct Watched {
  vokcube* cube;
  const char* stop_at;
  double done;
};

static void Progress(void* context, const char* step, double done) {
  struct Watched* watched = context;
  watched->done = done;
  if (strcmp(step, watched->stop_at) == 0) vokcube_stop(watched->cube);
}

static void TryLists(vokcube* cube) {
  char name[4];
  Expect(vokcube_list(cube, "DataSourceInfo") == 0 && vokcube_count(cube) == 2, "list");
  Expect(vokcube_name(cube, 1, name, sizeof name) == 6 && strcmp(name, "Exp") == 0,
         "a name cut short");
  Expect(vokcube_name(cube, 2, NULL, 0) == 0, "a name that is not there");
  Expect(vokcube_list(cube, "Nothing") != 0 && vokcube_count(cube) == 0, "list of no table");
  Expect(vokcube_cause(cube, name, sizeof name) > 3 && vokcube_code(cube) != 0, "its cause");
}

static void TryRuns(vokcube* cube, const char* output) {
  char text[1000];
  struct Watched watched = {cube, "never", 0};
  vokcube_show_progress(cube, Progress, &watched);
  Expect(vokcube_run(cube, "Domestic", "Demo", output) == 0 && watched.done == 1, "run");
  Expect(vokcube_rows(cube) > 0 && vokcube_milliseconds(cube) < 60000, "rows");
  vokcube_workbook(cube, text, sizeof text);
  Expect(strncmp(text, output, strlen(output)) == 0, "workbook");
  watched.stop_at = "query";
  Expect(vokcube_run(cube, "Domestic", "Demo", output) == VOKCUBE_STOPPED, "stop");
  vokcube_show_progress(cube, NULL, NULL);
  vokcube_show_messages(Message, NULL);
  Expect(vokcube_run(cube, "Nothing", NULL, output) == 2222 && messages == 1, "run of no set");
  vokcube_show_messages(NULL, NULL);
  Expect(vokcube_cause(cube, text, sizeof text) == strlen(text), "cause");
  Expect(strcmp(text, "Datasource Definition: Nothing  Not Found!!") == 0, text);
  Expect(vokcube_rows(cube) == 0 && vokcube_workbook(cube, text, sizeof text) == 0,
         "nothing written");
}

int main(int count, char** arguments) {
  vokcube* cube = vokcube_new();
  if (count != 4 || cube == NULL) return 1;
  Expect(strcmp(vokcube_version(), arguments[1]) == 0, vokcube_version());
  Expect(vokcube_use_settings_folder(cube, arguments[2]) == 0, "settings folder");
  TryLists(cube);
  TryRuns(cube, arguments[3]);
  vokcube_free(cube);
  vokcube_free(NULL);
  return surprises;
}
