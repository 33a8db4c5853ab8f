// Files that fail on demand.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "platform/failure.h"
#include "platform/files.h"

namespace vok::test {

/// Hands every call on to the files below, except the `fail_at`-th that may fail (counted from 1;
/// 0: none), which throws `failure` instead. The calls of replacements and scratch files count too.
/// A loop over `fail_at` until `calls` stays below it visits every place where the disk can give
/// up.
class FailingFiles : public Files {
 public:
  FailingFiles(Files& below, Failure thrown) : failure(std::move(thrown)), below_(below) {}

  bool Exists(const std::string& path) const override { return below_.Exists(path); }
  bool IsDirectory(const std::string& path) const override { return below_.IsDirectory(path); }
  void Delete(const std::string& path) override {
    Count();
    below_.Delete(path);
  }
  void CreateDirectory(const std::string& path) override {
    Count();
    below_.CreateDirectory(path);
  }
  void Append(const std::string& path, std::string_view bytes) override {
    Count();
    below_.Append(path, bytes);
  }
  std::unique_ptr<FileReader> Open(const std::string& path) const override {
    Count();
    return below_.Open(path);
  }
  std::unique_ptr<FileReplacement> Replace(const std::string& path) override {
    Count();
    return std::make_unique<Replacement>(*this, below_.Replace(path));
  }
  std::unique_ptr<ScratchFile> Scratch(const std::string& beside) override {
    Count();
    return std::make_unique<CountedScratch>(*this, below_.Scratch(beside));
  }
  Date LastModified(const std::string& path) const override {
    Count();
    return below_.LastModified(path);
  }
  void ChangeDirectory(const std::string& path) override {
    Count();
    below_.ChangeDirectory(path);
  }
  std::string NativePath(const std::string& path) const override { return below_.NativePath(path); }

  Failure failure;
  int fail_at = 0;
  mutable int calls = 0;

 private:
  class Replacement : public FileReplacement {
   public:
    Replacement(const FailingFiles& files, std::unique_ptr<FileReplacement> below)
        : files_(files), below_(std::move(below)) {}
    void Write(std::span<const std::byte> bytes) override {
      files_.Count();
      below_->Write(bytes);
    }
    void Commit() override {
      files_.Count();
      below_->Commit();
    }

   private:
    const FailingFiles& files_;
    std::unique_ptr<FileReplacement> below_;
  };

  class CountedScratch : public ScratchFile {
   public:
    CountedScratch(const FailingFiles& files, std::unique_ptr<ScratchFile> below)
        : files_(files), below_(std::move(below)) {}
    void Write(std::span<const std::byte> bytes) override {
      files_.Count();
      below_->Write(bytes);
    }
    void Read(uint64_t offset, std::span<std::byte> bytes) const override {
      files_.Count();
      below_->Read(offset, bytes);
    }

   private:
    const FailingFiles& files_;
    std::unique_ptr<ScratchFile> below_;
  };

  void Count() const {
    if (++calls == fail_at) throw failure;
  }

  Files& below_;
};

}  // namespace vok::test
