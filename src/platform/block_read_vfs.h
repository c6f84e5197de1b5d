#pragma once

// The name of a SQLite VFS that reads a database file in large blocks when it
// is read in order: a walk of many records then costs one system call per
// 256 KiB instead of one per page. Everything but the database file's reads
// goes to the default VFS unchanged. Registered on first use.
namespace qb {

const char* blockReadVfsName();

}  // namespace qb
