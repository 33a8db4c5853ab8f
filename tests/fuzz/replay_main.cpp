// Replays files through a fuzz target: as they are, cut short, and damaged at places that a fixed
// seed chooses. Arguments: [N] FOLDER; N damaged copies and at most N prefixes of every file. Exit
// status 2 when there was nothing to replay.
#include <algorithm>
#include <cstddef>
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

Bytes ReadFile(const std::filesystem::path& path) {
  std::ifstream stream(path, std::ios::binary);
  return Bytes(std::istreambuf_iterator<char>(stream), {});
}

// A copy of exactly the given size, so that a sanitizer sees every read past its end.
void RunCopy(const uint8_t* data, std::size_t size) {
  const Bytes copy(data, data + size);
  LLVMFuzzerTestOneInput(copy.data(), copy.size());
}

void RunPrefixes(const Bytes& input, std::size_t count) {
  const std::size_t step = input.size() / count + 1;
  for (std::size_t length = 0; length < input.size(); length += step) RunCopy(input.data(), length);
}

void Damage(Bytes& bytes, std::mt19937& random) {
  const std::size_t place = random() % bytes.size();
  switch (random() % 4) {
    case 0:
      bytes[place] = static_cast<uint8_t>(random());
      break;
    case 1:
      bytes[place] ^= static_cast<uint8_t>(1U << (random() % 8));
      break;
    case 2:
      bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(place), bytes[bytes.size() / 2]);
      break;
    default:
      if (bytes.size() > 1) bytes.erase(bytes.begin() + static_cast<std::ptrdiff_t>(place));
  }
}

void RunDamaged(const Bytes& input, std::size_t count) {
  std::mt19937 random(20240515);
  for (std::size_t copy = 0; copy < count; ++copy) {
    Bytes bytes = input;
    for (std::size_t edits = 1 + random() % 8; edits > 0; --edits) Damage(bytes, random);
    RunCopy(bytes.data(), bytes.size());
  }
}

}  // namespace

int main(int count, char** arguments) {
  const std::size_t damaged = count > 2 ? std::strtoul(arguments[1], nullptr, 10) : 0;
  std::vector<std::filesystem::path> paths;
  for (const auto& entry : std::filesystem::directory_iterator(arguments[count - 1])) {
    paths.push_back(entry.path());
  }
  std::sort(paths.begin(), paths.end());
  for (const auto& path : paths) {
    const Bytes input = ReadFile(path);
    RunCopy(input.data(), input.size());
    if (damaged == 0 || input.empty()) continue;
    RunPrefixes(input, damaged);
    RunDamaged(input, damaged);
  }
  std::printf("%zu files replayed\n", paths.size());
  return paths.empty() ? 2 : 0;
}
