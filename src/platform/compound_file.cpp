#include "platform/compound_file.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "platform/compound_impl.h"
#include "platform/compound_names.h"
#include "platform/text.h"

namespace qb {

namespace compound {

Status openFileSource(const std::string& path, std::unique_ptr<ByteSource>* out);
std::unique_ptr<ByteSource> memorySource(std::vector<std::uint8_t> bytes);

FileImpl::~FileImpl() = default;

Status FileImpl::find(std::uint32_t storage, std::u16string_view name, std::uint32_t* out) {
    *out = kNoStream;
    return writable ? findWritten(storage, name, out) : findRead(storage, name, out);
}

Status FileImpl::children(std::uint32_t storage, std::vector<std::uint32_t>* out) {
    if (writable) return writtenChildren(storage, out);
    Status s = listChildren(storage);
    if (s.isOk()) *out = listings[storage].children;
    return s;
}

std::uint8_t FileImpl::typeOf(std::uint32_t node) {
    if (writable) return writtenType[node];
    std::uint8_t type = kTypeUnused;
    return entryType(node, &type).isOk() ? type : kTypeUnused;
}

Status FileImpl::describe(std::uint32_t node, ElementInfo* out) {
    std::uint8_t type = 0;
    if (writable) {
        type = writtenType[node];
        out->size = type == kTypeStream ? written[node].size : 0;
        Status s = writtenName(node, &out->name);
        if (!s.isOk()) return s;
    } else {
        DirEntry e;
        Status s = entry(node, &e);
        if (!s.isOk()) return s;
        type = e.type;
        out->name = std::move(e.name);
        out->size = e.size;
    }
    out->type = type == kTypeStream ? ElementType::kStream : ElementType::kStorage;
    return Status::ok();
}

}  // namespace compound

using compound::FileImpl;
using compound::kNoStream;

namespace {

// "name" in UTF-8, quotes included.
std::string quoted(std::u16string_view name) {
    std::string text(1, '"');
    text.append(utf16ToUtf8(name));
    text.push_back('"');
    return text;
}

Status noSuch(const char* what, std::u16string_view name) {
    return Status::notFound(
        std::string("there is no ").append(what).append(" ").append(quoted(name)));
}

// A window of a read stream: large streams are read this much at a time.
constexpr std::size_t kWindow = std::size_t{1} << 16;

}  // namespace

bool CompoundEnum::next(ElementInfo* out) {
    if (!file_ || at_ >= elements_.size()) return false;
    return file_->describe(elements_[at_++], out).isOk();
}

Status CompoundEnum::openStream(CompoundStream* out) {
    out->release();
    if (!file_ || at_ == 0) return Status::invalidArgument("no element was handed out");
    if (file_->writable) return Status::invalidArgument("a written stream cannot be read back");
    std::uint32_t node = elements_[at_ - 1];
    // Where names repeat, the name decides which one opens, as it does for
    // openStream() by name.
    if (!file_->listings[storage_].ordered || file_->typeOf(node) != compound::kTypeStream) {
        ElementInfo info;
        Status s = file_->describe(node, &info);
        if (!s.isOk()) return s;
        CompoundStorage storage;
        storage.file_ = file_;
        storage.node_ = storage_;
        return storage.openStream(info.name, out);
    }
    return out->openRead(file_, node);
}

Status CompoundStream::openRead(const std::shared_ptr<FileImpl>& file, std::uint32_t node) {
    compound::DirEntry e;
    Status s = file->entry(node, &e);
    if (s.isOk()) s = file->streamChain(node, e, &chain_);
    if (!s.isOk()) return s;
    file_ = file;
    node_ = node;
    writable_ = false;
    mini_ = e.size < compound::kMiniStreamCutoff;
    size_ = e.size;
    position_ = 0;
    windowAt_ = 0;
    window_.clear();
    return Status::ok();
}

Status CompoundStream::fill() {
    windowAt_ = position_;
    std::size_t n = static_cast<std::size_t>(std::min<std::uint64_t>(kWindow, size_ - position_));
    window_.resize(n);
    return file_->readStream(chain_, mini_, position_, window_.data(), n);
}

Status CompoundStream::read(void* buffer, std::size_t size, std::size_t* got) {
    *got = 0;
    if (!file_) return Status::invalidArgument("the stream is not open");
    if (writable_) return Status::invalidArgument("the stream is open for writing");
    auto* to = static_cast<std::uint8_t*>(buffer);
    std::size_t want = static_cast<std::size_t>(std::min<std::uint64_t>(size, size_ - position_));
    while (*got < want) {
        if (position_ < windowAt_ || position_ >= windowAt_ + window_.size()) {
            Status s = fill();
            if (!s.isOk()) return s;
        }
        std::size_t at = static_cast<std::size_t>(position_ - windowAt_);
        std::size_t n = std::min(want - *got, window_.size() - at);
        std::memcpy(to + *got, window_.data() + at, n);
        *got += n;
        position_ += n;
    }
    return Status::ok();
}

Status CompoundStream::readExact(void* buffer, std::size_t size) {
    std::size_t got = 0;
    Status s = read(buffer, size, &got);
    if (!s.isOk()) return s;
    if (got != size) {
        ElementInfo info;
        file_->describe(node_, &info);
        return Status::corruption(std::string("stream ")
                                      .append(quoted(info.name))
                                      .append(" ends ")
                                      .append(std::to_string(size - got))
                                      .append(" bytes too soon"));
    }
    return Status::ok();
}

Status CompoundStream::write(const void* data, std::size_t size) {
    if (!file_) return Status::invalidArgument("the stream is not open");
    if (!writable_) return Status::invalidArgument("the stream is open for reading only");
    if (file_->closed) return Status::invalidArgument("the file is closed");
    return file_->append(node_, data, size);
}

std::uint64_t CompoundStream::size() const {
    if (!file_) return 0;
    return writable_ ? file_->written[node_].size : size_;
}

std::uint64_t CompoundStream::remaining() const {
    return writable_ || !file_ ? 0 : size_ - position_;
}

void CompoundStream::release() {
    file_.reset();
    position_ = 0;
    size_ = 0;
    windowAt_ = 0;
    window_.clear();
    // A large window is not kept for the next stream.
    if (window_.capacity() > compound::kMiniStreamCutoff) std::vector<std::uint8_t>().swap(window_);
}

Status CompoundStorage::createStream(std::u16string_view name, CompoundStream* out) {
    out->release();
    if (!file_) return Status::invalidArgument("the storage is not open");
    std::uint32_t index = 0;
    Status s = file_->addElement(node_, name, compound::kTypeStream, &index);
    if (!s.isOk()) return s;
    out->file_ = file_;
    out->node_ = index;
    out->writable_ = true;
    return Status::ok();
}

Status CompoundStorage::openStream(std::u16string_view name, CompoundStream* out) {
    out->release();
    if (!file_) return Status::invalidArgument("the storage is not open");
    std::uint32_t index = kNoStream;
    Status s = file_->find(node_, name, &index);
    if (!s.isOk()) return s;
    if (index == kNoStream || file_->typeOf(index) != compound::kTypeStream) {
        return noSuch("stream", name);
    }
    if (file_->writable) return Status::invalidArgument("a written stream cannot be read back");
    return out->openRead(file_, index);
}

Status CompoundStorage::createStorage(std::u16string_view name, CompoundStorage* out) {
    out->release();
    if (!file_) return Status::invalidArgument("the storage is not open");
    std::uint32_t index = 0;
    Status s = file_->addElement(node_, name, compound::kTypeStorage, &index);
    if (!s.isOk()) return s;
    out->file_ = file_;
    out->node_ = index;
    return Status::ok();
}

Status CompoundStorage::openStorage(std::u16string_view name, CompoundStorage* out) {
    out->release();
    if (!file_) return Status::invalidArgument("the storage is not open");
    std::uint32_t index = kNoStream;
    Status s = file_->find(node_, name, &index);
    if (!s.isOk()) return s;
    if (index == kNoStream || file_->typeOf(index) != compound::kTypeStorage) {
        return noSuch("storage", name);
    }
    out->file_ = file_;
    out->node_ = index;
    return Status::ok();
}

Status CompoundStorage::enumElements(CompoundEnum* out) {
    *out = CompoundEnum();
    if (!file_) return Status::invalidArgument("the storage is not open");
    Status s = file_->children(node_, &out->elements_);
    if (!s.isOk()) return s;
    out->file_ = file_;
    out->storage_ = node_;
    return Status::ok();
}

CompoundFile::CompoundFile(std::shared_ptr<FileImpl> impl) : impl_(std::move(impl)) {}

CompoundFile::~CompoundFile() {
    close();
}

Status CompoundFile::create(const std::string& path, std::unique_ptr<CompoundFile>* out) {
    out->reset();
    auto impl = std::make_shared<FileImpl>();
    impl->writable = true;
    impl->path = path;
    impl->out = std::make_unique<FileWriter>(path);
    Status opened = impl->out->open();
    if (!opened.isOk()) return opened;
    impl->spool = std::make_unique<FileWriter>(path);
    opened = impl->spool->openScratch();
    if (!opened.isOk()) return opened;
    impl->written.emplace_back();
    impl->writtenType.push_back(compound::kTypeRoot);
    impl->storages.emplace_back();
    out->reset(new CompoundFile(std::move(impl)));
    return Status::ok();
}

Status CompoundFile::open(const std::string& path, std::unique_ptr<CompoundFile>* out) {
    out->reset();
    auto impl = std::make_shared<FileImpl>();
    impl->path = path;
    Status s = compound::openFileSource(path, &impl->source);
    if (s.isOk()) s = impl->load();
    if (!s.isOk()) return s;
    out->reset(new CompoundFile(std::move(impl)));
    return Status::ok();
}

Status CompoundFile::openBytes(std::vector<std::uint8_t> bytes,
                               std::unique_ptr<CompoundFile>* out) {
    out->reset();
    auto impl = std::make_shared<FileImpl>();
    impl->source = compound::memorySource(std::move(bytes));
    Status s = impl->load();
    if (!s.isOk()) return s;
    out->reset(new CompoundFile(std::move(impl)));
    return Status::ok();
}

CompoundStorage CompoundFile::root() {
    CompoundStorage storage;
    storage.file_ = impl_;
    storage.node_ = 0;
    return storage;
}

Status CompoundFile::close() {
    if (!impl_ || impl_->closed) return Status::ok();
    Status s;
    if (impl_->writable) {
        s = impl_->writeOut();
        // A failed write leaves no file under the name; otherwise the file
        // goes in place.
        if (s.isOk()) s = impl_->out->commit();
        impl_->out.reset();
        // The spool goes with its bytes, even while handles remain.
        impl_->spool.reset();
        impl_->storages.clear();
    }
    impl_->closed = true;
    return s;
}

}  // namespace qb
