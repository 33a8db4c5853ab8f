// Queries of any bytes: read or refused; what is read, written out and read again, is the same.
// What the sample ledger then answers, within a second, is a result or a failure.
#include "providers/cube/olap/mdx/parser.h"
#include "providers/cube/olap/olap_provider.h"
#include "system/posix/icu_locale.h"
#include "system/posix/posix_files.h"
#include "tests/fuzz/fuzz.h"
#include "tests/support/answers/answer.h"
#include "tests/support/cubes/sample_cube.h"

namespace {

std::string Written(const std::string& mdx) {
  const vok::olap::SourceText source(mdx);
  return ToText(vok::olap::Parse(source));
}

void Run(const std::string& mdx) {
  static const vok::IcuLocale locale("en_GB");
  static const vok::PosixFiles files;
  static const vok::test::BuiltCube built(vok::test::SampleLedger());
  static vok::olap::OlapCubeProvider provider(files, locale);
  static const auto connection = provider.Connect(
      "Provider=MSOLAP;Max Cells=5000;Timeout=1;Data Source=" + built.path(), nullptr);
  Refuses([&] { vok::test::Shown({"", connection->Execute(mdx)}, true); });
}

}  // namespace

void FuzzOne(std::string_view bytes) {
  const std::string mdx(bytes);
  std::string first;
  if (Refuses([&] { first = Written(mdx); })) return;
  Run(mdx);
  try {
    if (Written(first) != first) std::abort();
  } catch (const vok::Failure& failure) {
    // Written out, every operation stands in parentheses: that may nest too deep.
    if (failure.description().find("nest more than") == std::string::npos) std::abort();
  }
}
