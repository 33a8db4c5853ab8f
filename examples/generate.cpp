// Makes the example ledger, as committed or larger: CSV tables, schema and settings.
#include <exception>
#include <iostream>

#include "examples/tables.h"

int main(int count, char** arguments) {
  try {
    vok::examples::Plan plan = vok::examples::ParsePlan(count, arguments);
    std::filesystem::create_directories(plan.output);
    vok::examples::WriteDimensions(plan);
    vok::examples::WriteDocuments(plan);
    int64_t entries = vok::examples::WriteEntries(plan);
    std::cout << entries << " entries in " << plan.output.string() << "\n";
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "generate: " << error.what()
              << "\nusage: generate --output DIR [--seed S] [--facts N] [--lines N] [--ledgers N]"
                 " [--files N] [--money-sets N] [--months N] [--days]\n";
    return 2;
  }
}
