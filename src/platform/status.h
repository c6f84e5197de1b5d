#pragma once

#include <string>
#include <utility>

namespace qb {

// The outcome of a platform operation, with a sentence the edge can print.
class Status {
  public:
    enum class Code { kOk, kNotFound, kCorruption, kIoError, kInvalidArgument };

    Status() = default;
    static Status ok() { return Status(); }
    static Status notFound(std::string message) { return {Code::kNotFound, std::move(message)}; }
    static Status corruption(std::string message) {
        return {Code::kCorruption, std::move(message)};
    }
    static Status ioError(std::string message) { return {Code::kIoError, std::move(message)}; }
    static Status invalidArgument(std::string message) {
        return {Code::kInvalidArgument, std::move(message)};
    }

    bool isOk() const { return code_ == Code::kOk; }
    Code code() const { return code_; }
    const std::string& message() const { return message_; }

  private:
    Status(Code code, std::string message) : code_(code), message_(std::move(message)) {}

    Code code_ = Code::kOk;
    std::string message_;
};

}  // namespace qb
