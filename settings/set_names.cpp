#include "settings/set_names.h"

#include "platform/failure.h"
#include "platform/text.h"

namespace vok {

std::string SetNameProblem(const std::string& name) {
  const auto named = [&] { return "is named \"" + name + "\""; };
  if (TrimBlanks(name).empty()) return "needs a name that is not empty";
  if (TrimBlanks(name) != name) return named() + "; remove the blanks around the name";
  if (const auto at = name.find_first_of("*?#['"); at != std::string::npos) {
    return named() + "; a name may not contain " + name[at] +
           " because saved names are found by pattern; choose another name";
  }
  return {};
}

void CheckSetName(const std::string& words, const std::string& name) {
  const std::string problem = SetNameProblem(name);
  if (problem.empty()) return;
  throw Failure(failure_number::kInvalidCall,
                "The " + words + " " + problem +
                    ". A set that is saved under such a name is renamed or deleted with vokcube "
                    "settings rename or vokcube settings delete.");
}

}  // namespace vok
