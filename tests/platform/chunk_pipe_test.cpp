#include "platform/chunk_pipe.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <vector>

namespace qb {
namespace {

// The item the maker makes as its i-th: sizes from nothing to more than a
// whole chunk, so that items end chunks early and late.
std::string itemBytes(std::uint32_t i) {
    const std::size_t size = i % 97 == 0 ? 300 * 1024 : (i * 37) % 600;
    return std::string(size, static_cast<char>('a' + i % 26));
}

TEST(ChunkPipeTest, EveryItemArrivesInOrderWithItsTag) {
    constexpr std::uint32_t kItems = 5000;
    std::atomic<bool> madeAll = false;
    ChunkPipe pipe;
    pipe.start([&madeAll](ChunkPipe& out) {
        for (std::uint32_t i = 0; i < kItems; ++i) {
            if (!out.put(i * 3, itemBytes(i))) return;
        }
        madeAll = true;
    });
    std::uint32_t count = 0;
    std::uint32_t tag = 0;
    std::string_view bytes;
    while (pipe.next(&tag, &bytes)) {
        ASSERT_EQ(tag, count * 3);
        ASSERT_EQ(bytes, itemBytes(count)) << "item " << count;
        ++count;
    }
    EXPECT_EQ(count, kItems);
    EXPECT_TRUE(madeAll) << "what the maker did is seen once the pipe has ended";
    EXPECT_FALSE(pipe.next(&tag, &bytes));
}

TEST(ChunkPipeTest, AMakerWithNothingToGiveEndsThePipe) {
    ChunkPipe pipe;
    pipe.start([](ChunkPipe&) {});
    std::uint32_t tag = 0;
    std::string_view bytes;
    EXPECT_FALSE(pipe.next(&tag, &bytes));
}

// A caller that stops early lets go of a maker waiting for room, which
// learns from put() that nobody wants more.
TEST(ChunkPipeTest, TheCallerStoppingEndsTheMaker) {
    std::atomic<bool> refused = false;
    {
        ChunkPipe pipe;
        pipe.start([&refused](ChunkPipe& out) {
            for (std::uint32_t i = 0;; ++i) {
                if (!out.put(i, std::string(1000, 'x'))) {
                    refused = true;
                    return;
                }
            }
        });
        std::uint32_t tag = 0;
        std::string_view bytes;
        for (int i = 0; i < 10; ++i) ASSERT_TRUE(pipe.next(&tag, &bytes));
    }
    EXPECT_TRUE(refused);
}

// The caller need not take a single item: the pipe still stops its maker,
// which could make no more than its few chunks hold.
TEST(ChunkPipeTest, APipeNeverReadFromStopsItsMaker) {
    std::atomic<int> made = 0;
    {
        ChunkPipe pipe;
        pipe.start([&made](ChunkPipe& out) {
            while (out.put(0, std::string(4096, 'y'))) ++made;
        });
    }
    EXPECT_LE(made.load(), 4 * (128 * 1024 / 4096 + 1));
}

// The maker learns how far ahead of the caller it is: chunks handed over
// count until the caller takes them.
TEST(ChunkPipeTest, TheMakerSeesTheChunksWaitingForTheCaller) {
    constexpr int kChunkBytes = 128 * 1024;
    std::atomic<int> seenAtEnd = -1;
    std::atomic<bool> threeMade = false;
    ChunkPipe pipe;
    pipe.start([&](ChunkPipe& out) {
        const int before = out.waiting();
        for (int chunk = 0; chunk < 3; ++chunk) out.put(1, std::string(kChunkBytes, 'z'));
        seenAtEnd = before;
        threeMade = true;
        threeMade.notify_all();
    });
    threeMade.wait(false);
    EXPECT_EQ(seenAtEnd.load(), 0);
    EXPECT_EQ(pipe.waiting(), 3);
    std::uint32_t tag = 0;
    std::string_view bytes;
    ASSERT_TRUE(pipe.next(&tag, &bytes));
    EXPECT_EQ(pipe.waiting(), 2);
    while (pipe.next(&tag, &bytes)) {
    }
    EXPECT_EQ(pipe.waiting(), 0);
}

}  // namespace
}  // namespace qb
