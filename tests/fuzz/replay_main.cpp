// Replays files through a fuzz target: as they are, cut short, and damaged at places that a fixed
// seed chooses. Arguments: [--damaged=N] FILE_OR_FOLDER...; N damaged copies and at most N prefixes
// of every file. Exit status 2 when there was nothing to replay.
#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
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
  if (count == 0) return;
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
  if (input.empty()) return;
  std::mt19937 random(20240515);
  for (std::size_t copy = 0; copy < count; ++copy) {
    Bytes bytes = input;
    for (std::size_t edits = 1 + random() % 8; edits > 0; --edits) Damage(bytes, random);
    RunCopy(bytes.data(), bytes.size());
  }
}

std::vector<std::filesystem::path> FilesOf(const std::filesystem::path& path) {
  if (!std::filesystem::is_directory(path)) return {path};
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(path)) {
    if (entry.is_regular_file()) files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

}  // namespace

int main(int count, char** arguments) {
  constexpr std::string_view kDamaged = "--damaged=";
  std::size_t damaged = 0;
  std::size_t replayed = 0;
  for (int index = 1; index < count; ++index) {
    const std::string_view argument = arguments[index];
    if (argument.starts_with(kDamaged)) {
      std::from_chars(argument.data() + kDamaged.size(), argument.data() + argument.size(),
                      damaged);
      continue;
    }
    for (const auto& path : FilesOf(argument)) {
      const Bytes input = ReadFile(path);
      RunCopy(input.data(), input.size());
      RunPrefixes(input, damaged);
      RunDamaged(input, damaged);
      ++replayed;
    }
  }
  std::printf("%zu files replayed\n", replayed);
  return replayed == 0 ? 2 : 0;
}
