// plain_write BYTES FILE: the yardstick of the export benchmarks, a plain C
// loop writing BYTES bytes to FILE in 64 KiB writes, with nothing else done.

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>

int main(int argc, char** argv) {
    if (argc != 3) return 2;
    long long left = std::atoll(argv[1]);
    static char block[1 << 16];
    std::memset(block, 'x', sizeof block);
    const int fd = ::open(argv[2], O_WRONLY | O_CREAT | O_TRUNC, 0666);
    if (fd < 0) return 1;
    while (left > 0) {
        const ssize_t n =
            ::write(fd, block,
                    left < static_cast<long long>(sizeof block) ? static_cast<std::size_t>(left)
                                                                : sizeof block);
        if (n <= 0) return 1;
        left -= n;
    }
    return ::close(fd) == 0 ? 0 : 1;
}
