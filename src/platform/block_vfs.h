#pragma once

namespace qb {

// The name of a SQLite VFS that moves the data file's bytes in blocks of
// 64 KiB where SQLite moves them a page at a time in order: reading a walk
// of many records, and writing the frames of a large transaction to the
// log or a checkpoint's pages to the file, then costs one system call per
// block instead of one or two per page. Everything else goes to the default
// VFS unchanged. Registered on first use; null when it cannot be.
const char* blockVfsName();

}  // namespace qb
