#include "vokcubeq17_c.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <string>
#include <vector>

#include "vokcubeq17.h"

struct vokcube {
  vokcubeq17::clMe me;
  int32_t code = 0;
  std::string cause;
  std::vector<std::string> names;
};

namespace {

std::string TextOf(const char* text) { return text == nullptr ? "" : text; }

size_t Give(const std::string& text, char* buffer, size_t size) {
  if (size > 0) {
    const size_t length = std::min(text.size(), size - 1);
    std::memcpy(buffer, text.data(), length);
    buffer[length] = '\0';
  }
  return text.size();
}

/// Does it, and keeps how that ended.
template <typename Work>
int32_t Kept(vokcube& cube, const Work& work) noexcept {
  try {
    cube.code = 0;
    cube.cause.clear();
    work();
  } catch (...) {
    const vok::Failure failure = vok::CurrentFailure();
    cube.code = failure.number();
    cube.cause = failure.description();
  }
  return cube.code;
}

}  // namespace

vokcube* vokcube_new() {
  try {
    return new vokcube;
  } catch (...) {
    return nullptr;
  }
}

void vokcube_free(vokcube* cube) { delete cube; }

const char* vokcube_version() {
  static const std::string version = vokcubeq17::clMe().Version();
  return version.c_str();
}

int32_t vokcube_use_settings_folder(vokcube* cube, const char* folder) {
  return Kept(*cube, [&] { vokcubeq17::UseSettingsFolder(TextOf(folder)); });
}

int32_t vokcube_run(vokcube* cube, const char* data_source, const char* periods,
                    const char* output) {
  return Kept(*cube, [&] {
    std::string source = TextOf(data_source), set = TextOf(periods), path = TextOf(output);
    cube->me.RunQuery(source, set, path);
    cube->code = cube->me.LastRun().code;
    cube->cause = cube->me.LastRun().cause;
  });
}

void vokcube_stop(vokcube* cube) { cube->me.Stop(); }

uint64_t vokcube_rows(const vokcube* cube) { return cube->me.LastRun().rows; }

size_t vokcube_workbook(const vokcube* cube, char* buffer, size_t size) {
  return Give(cube->me.LastRun().workbook, buffer, size);
}

uint32_t vokcube_milliseconds(const vokcube* cube) { return cube->me.LastRun().milliseconds; }

int32_t vokcube_code(const vokcube* cube) { return cube->code; }

size_t vokcube_cause(const vokcube* cube, char* buffer, size_t size) {
  return Give(cube->cause, buffer, size);
}

int32_t vokcube_list(vokcube* cube, const char* table) {
  cube->names.clear();
  return Kept(*cube, [&] {
    vok::Value names;
    std::string name = TextOf(table);
    cube->me.GetSetNames(names, name);
    for (const vok::Value& set : *names.As<vok::Value::Array>()) {
      if (!set.IsEmpty()) cube->names.push_back(set.ToText());
    }
  });
}

size_t vokcube_count(const vokcube* cube) { return cube->names.size(); }

size_t vokcube_name(const vokcube* cube, size_t index, char* buffer, size_t size) {
  return Give(index < cube->names.size() ? cube->names[index] : "", buffer, size);
}

void vokcube_show_messages(vokcube_message* show, void* context) {
  if (show == nullptr) {
    vokcubeq17::ShowMessagesWith({});
    return;
  }
  vokcubeq17::ShowMessagesWith([=](const std::string& title, const std::string& text) {
    show(context, title.c_str(), text.c_str());
  });
}

void vokcube_show_progress(vokcube* cube, vokcube_progress* show, void* context) {
  if (show == nullptr) {
    cube->me.ShowProgressWith({});
    return;
  }
  cube->me.ShowProgressWith(
      [=](const std::string& step, double done) { show(context, step.c_str(), done); });
}
