// Replays files through a fuzz target: as they are, cut short, and damaged at places that a fixed
// seed chooses. Arguments: N FOLDER; N prefixes and N damaged copies of every file. Exit status 2
// when there was nothing to replay.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size);

namespace {

using Bytes = std::vector<uint8_t>;

// A copy of exactly the given size, so that a sanitizer sees every read past its end.
void RunCopy(const Bytes& bytes, std::size_t size) {
  const Bytes copy(bytes.data(), bytes.data() + size);
  LLVMFuzzerTestOneInput(copy.data(), copy.size());
}

/// Puts up to two other bytes in the place of up to two.
void Damage(Bytes& bytes, std::mt19937& random) {
  const auto place = bytes.begin() + static_cast<std::ptrdiff_t>(random() % bytes.size());
  const auto gone = std::min(bytes.end() - place, static_cast<std::ptrdiff_t>(random() % 3));
  const auto after = bytes.erase(place, place + gone);
  bytes.insert(after, random() % 3, static_cast<uint8_t>(random()));
  if (bytes.empty()) bytes.push_back(0);
}

void Replay(const Bytes& input, std::size_t count) {
  RunCopy(input, input.size());
  std::mt19937 random(20240515);
  for (std::size_t copy = 0; copy < count && !input.empty(); ++copy) {
    RunCopy(input, input.size() * copy / count);
    Bytes bytes = input;
    for (auto edits = 1 + random() % 8; edits > 0; --edits) Damage(bytes, random);
    RunCopy(bytes, bytes.size());
  }
}

}  // namespace

int main(int, char** arguments) {
  int replayed = 0;
  for (const auto& entry : std::filesystem::directory_iterator(arguments[2])) {
    std::ifstream stream(entry.path(), std::ios::binary);
    Replay(Bytes(std::istreambuf_iterator<char>(stream), {}),
           std::strtoul(arguments[1], nullptr, 10));
    ++replayed;
  }
  std::printf("%d files replayed\n", replayed);
  return replayed == 0 ? 2 : 0;
}
