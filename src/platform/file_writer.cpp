#include "platform/file_writer.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace qb {
namespace {

struct Fault {
    std::atomic<std::uint64_t> nth{0};
    std::atomic<int> error{0};
    std::atomic<std::uint64_t> count{0};
    std::atomic<bool> hit{false};
};

int errorNamed(std::string_view name) {
    if (name == "ENOSPC") return ENOSPC;
    if (name == "EIO") return EIO;
    if (name == "EDQUOT") return EDQUOT;
    if (name == "EFBIG") return EFBIG;
    return 0;
}

Fault& fault() {
    static Fault* f = [] {
        auto* made = new Fault;  // lives for the process, as the environment does
        if (const char* setting = std::getenv("QUILLARBOR_FAIL_WRITE")) {
            const std::string_view text(setting);
            const std::size_t colon = text.find(':');
            const std::uint64_t nth = std::strtoull(setting, nullptr, 10);
            const int error =
                colon == std::string_view::npos ? ENOSPC : errorNamed(text.substr(colon + 1));
            if (nth > 0 && error != 0) {
                made->nth = nth;
                made->error = error;
            }
        }
        return made;
    }();
    return *f;
}

// Counts one write; answers the error it must fail with, or 0.
int injectedError() {
    Fault& f = fault();
    const std::uint64_t nth = f.nth.load();
    if (nth == 0) return 0;
    if (f.count.fetch_add(1) + 1 != nth) return 0;
    f.hit = true;
    return f.error.load();
}

std::string temporaryName(const std::string& path) {
    static std::atomic<unsigned> serial{0};
    return path + "." + std::to_string(::getpid()) + "-" + std::to_string(++serial) + ".part";
}

}  // namespace

void setWriteFault(std::uint64_t nth, int error) {
    Fault& f = fault();
    f.nth = 0;
    f.count = 0;
    f.hit = false;
    f.error = error;
    f.nth = nth;
}

std::uint64_t writesCounted() {
    return fault().count.load();
}

bool writeFaultHit() {
    return fault().hit.load();
}

FileWriter::FileWriter(std::string path, std::size_t bufferBytes)
    : path_(std::move(path)), capacity_(bufferBytes == 0 ? 1 : bufferBytes) {}

FileWriter::~FileWriter() {
    abandon();
    delete[] buffer_;
}

Status FileWriter::fail(const char* what, int error) {
    if (status_.isOk()) {
        status_ = Status::ioError(std::string(what) + " " + path_ + ": " + std::strerror(error));
    }
    return status_;
}

Status FileWriter::open() {
    abandon();
    status_ = Status::ok();
    used_ = 0;
    flushed_ = 0;
    struct stat st {};
    const bool exists = ::stat(path_.c_str(), &st) == 0;
    if (exists && !S_ISREG(st.st_mode)) {
        fd_ = ::open(path_.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC | O_NOCTTY);
        if (fd_ < 0) return fail("cannot create", errno);
    } else {
        if (exists && S_ISDIR(st.st_mode)) return fail("cannot create", EISDIR);
        for (int attempt = 0; attempt < 100 && fd_ < 0; ++attempt) {
            tempPath_ = temporaryName(path_);
            fd_ =
                ::open(tempPath_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOCTTY, 0666);
            if (fd_ < 0 && errno != EEXIST) break;
        }
        if (fd_ < 0) {
            const int error = errno;
            tempPath_.clear();
            return fail("cannot create", error);
        }
        // A replaced file keeps its permissions.
        if (exists) ::fchmod(fd_, st.st_mode & 07777);
    }
    if (buffer_ == nullptr) buffer_ = new char[capacity_];
    return status_;
}

Status FileWriter::openScratch() {
    abandon();
    status_ = Status::ok();
    used_ = 0;
    flushed_ = 0;
    const std::size_t slash = path_.rfind('/');
    std::string dir = slash == std::string::npos ? "." : path_.substr(0, slash + 1);
    if (dir.empty()) dir = "/";
    fd_ = ::open(dir.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    if (fd_ < 0) {
        // A file system without unnamed files: a named one, removed at once.
        const std::string name = temporaryName(path_);
        fd_ = ::open(name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC | O_NOCTTY, 0600);
        if (fd_ >= 0) ::unlink(name.c_str());
    }
    if (fd_ < 0) {
        // A target in a directory we cannot write to (a device): the
        // temporary directory holds the scratch file instead.
        const char* tmp = std::getenv("TMPDIR");
        fd_ = ::open(tmp && *tmp ? tmp : "/tmp", O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
        if (fd_ < 0) return fail("cannot create", errno);
    }
    if (buffer_ == nullptr) buffer_ = new char[capacity_];
    return status_;
}

Status FileWriter::readAt(std::uint64_t offset, void* bytes, std::size_t count) {
    if (!status_.isOk()) return status_;
    if (fd_ < 0 || offset + count > size()) return fail("cannot read", EINVAL);
    if (offset + count > flushed_ && !flush().isOk()) return status_;
    auto* to = static_cast<char*>(bytes);
    std::size_t done = 0;
    while (done < count) {
        const ssize_t n = ::pread(fd_, to + done, count - done, static_cast<off_t>(offset + done));
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return fail("cannot read", n < 0 ? errno : EIO);
        done += static_cast<std::size_t>(n);
    }
    return status_;
}

Status FileWriter::flush() {
    if (!status_.isOk()) return status_;
    const char* at = buffer_;
    std::size_t left = used_;
    while (left > 0) {
        const int injected = injectedError();
        if (injected != 0) return fail("cannot write", injected);
        const ssize_t n = ::write(fd_, at, left);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) return fail("cannot write", errno);
        if (n == 0) return fail("cannot write", ENOSPC);
        at += n;
        left -= static_cast<std::size_t>(n);
        flushed_ += static_cast<std::uint64_t>(n);
    }
    used_ = 0;
    return status_;
}

Status FileWriter::write(const void* bytes, std::size_t count) {
    if (!status_.isOk()) return status_;
    if (fd_ < 0) return fail("cannot write", EBADF);
    const char* from = static_cast<const char*>(bytes);
    while (count > 0) {
        if (used_ == capacity_ && !flush().isOk()) return status_;
        const std::size_t take = std::min(count, capacity_ - used_);
        std::memcpy(buffer_ + used_, from, take);
        used_ += take;
        from += take;
        count -= take;
    }
    return status_;
}

Status FileWriter::truncate(std::uint64_t size) {
    if (!status_.isOk() || size >= this->size()) return status_;
    if (size >= flushed_) {
        used_ = static_cast<std::size_t>(size - flushed_);
        return status_;
    }
    used_ = 0;
    // A device or pipe written in place cannot be cut; what it took stays.
    if (tempPath_.empty()) return status_;
    if (::ftruncate(fd_, static_cast<off_t>(size)) != 0 ||
        ::lseek(fd_, static_cast<off_t>(size), SEEK_SET) < 0) {
        return fail("cannot write", errno);
    }
    flushed_ = size;
    return status_;
}

Status FileWriter::writeAt(std::uint64_t offset, const void* bytes, std::size_t count) {
    if (!status_.isOk()) return status_;
    if (fd_ < 0 || offset + count > size()) return fail("cannot write", EINVAL);
    const char* from = static_cast<const char*>(bytes);
    if (offset < flushed_) {
        const std::size_t onDisk =
            static_cast<std::size_t>(std::min<std::uint64_t>(count, flushed_ - offset));
        std::size_t done = 0;
        while (done < onDisk) {
            const int injected = injectedError();
            if (injected != 0) return fail("cannot write", injected);
            const ssize_t n =
                ::pwrite(fd_, from + done, onDisk - done, static_cast<off_t>(offset + done));
            if (n < 0 && errno == EINTR) continue;
            if (n <= 0) return fail("cannot write", n < 0 ? errno : ENOSPC);
            done += static_cast<std::size_t>(n);
        }
        from += onDisk;
        offset += onDisk;
        count -= onDisk;
    }
    if (count > 0) std::memcpy(buffer_ + (offset - flushed_), from, count);
    return status_;
}

Status FileWriter::commit() {
    if (fd_ < 0) return status_.isOk() ? fail("cannot write", EBADF) : status_;
    if (flush().isOk()) {
        const int injected = injectedError();
        if (injected != 0) fail("cannot write", injected);
    }
    // A full disk may only show at close.
    if (::close(fd_) != 0) fail("cannot write", errno);
    fd_ = -1;
    if (status_.isOk() && !tempPath_.empty()) {
        if (::rename(tempPath_.c_str(), path_.c_str()) != 0) {
            fail("cannot write", errno);
        } else {
            tempPath_.clear();
        }
    }
    if (!status_.isOk()) abandon();
    return status_;
}

void FileWriter::abandon() {
    if (fd_ >= 0) ::close(fd_);
    fd_ = -1;
    if (!tempPath_.empty()) ::unlink(tempPath_.c_str());
    tempPath_.clear();
    used_ = 0;
}

}  // namespace qb
