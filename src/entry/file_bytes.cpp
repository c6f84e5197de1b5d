#include "entry/file_bytes.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/file_writer.h"

namespace qb {

bool writeWholeFile(const std::string& path, const std::string& bytes, std::string* error) {
    FileWriter file(path);
    Status s = file.open();
    if (s.isOk()) s = file.write(bytes);
    if (s.isOk()) s = file.commit();
    if (error) *error = s.message();
    return s.isOk();
}

bool readWholeFile(const std::string& path, std::uintmax_t limit, std::string* out) {
    int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return false;
    struct stat st {};
    bool ok = ::fstat(fd, &st) == 0 && S_ISREG(st.st_mode) &&
              static_cast<std::uintmax_t>(st.st_size) <= limit;
    std::string bytes;
    if (ok) bytes.resize(static_cast<std::size_t>(st.st_size));
    std::size_t done = 0;
    while (ok && done < bytes.size()) {
        ssize_t n = ::read(fd, bytes.data() + done, bytes.size() - done);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) {
            ok = false;
            break;
        }
        done += static_cast<std::size_t>(n);
    }
    ::close(fd);
    if (ok) *out = std::move(bytes);
    return ok;
}

}  // namespace qb
