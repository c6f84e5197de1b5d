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
    if (!writable) {
        Status s = listChildren(storage);
        if (!s.isOk()) return s;
    }
    const Node& parent = nodes[storage];
    auto it = parent.byKey.find(nameKey(name));
    if (it != parent.byKey.end()) *out = it->second;
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

Status nameRefused(std::u16string_view name) {
    return Status::invalidArgument(
        quoted(name).append(" cannot name an element (1 to 31 characters, none of / \\ : !)"));
}

Status noSuch(const char* what, std::u16string_view name) {
    return Status::notFound(
        std::string("there is no ").append(what).append(" ").append(quoted(name)));
}

// Adds a new element under `storage`, dropping one of the same name.
Status addElement(FileImpl& file, std::uint32_t storage, std::u16string_view name,
                  std::uint8_t type, std::uint32_t* out) {
    if (!file.writable) return Status::invalidArgument("the file is open for reading only");
    if (file.closed) return Status::invalidArgument("the file is closed");
    if (!compound::validName(name)) return nameRefused(name);
    std::u16string key = compound::nameKey(name);
    auto index = static_cast<std::uint32_t>(file.nodes.size());
    compound::Node& parent = file.nodes[storage];
    auto it = parent.byKey.find(key);
    if (it != parent.byKey.end()) {
        std::uint32_t old = it->second;
        file.nodes[old].dropped = true;
        std::erase(parent.children, old);
        parent.byKey.erase(it);
    }
    parent.children.push_back(index);
    parent.byKey.emplace(std::move(key), index);
    compound::Node node;
    node.name = std::u16string(name);
    node.type = type;
    node.listed = true;
    file.nodes.push_back(std::move(node));
    *out = index;
    return Status::ok();
}

}  // namespace

bool CompoundEnum::next(ElementInfo* out) {
    if (!file_ || at_ >= elements_.size()) return false;
    const compound::Node& node = file_->nodes[elements_[at_++]];
    out->name = node.name;
    out->type = node.type == compound::kTypeStream ? ElementType::kStream : ElementType::kStorage;
    out->size = file_->writable ? node.data.size() : node.size;
    return true;
}

Status CompoundStream::read(void* buffer, std::size_t size, std::size_t* got) {
    *got = 0;
    if (!file_) return Status::invalidArgument("the stream is not open");
    if (writable_) return Status::invalidArgument("the stream is open for writing");
    std::size_t n = std::min(size, bytes_.size() - position_);
    if (n > 0) std::memcpy(buffer, bytes_.data() + position_, n);
    position_ += n;
    *got = n;
    return Status::ok();
}

Status CompoundStream::readExact(void* buffer, std::size_t size) {
    std::size_t got = 0;
    Status s = read(buffer, size, &got);
    if (!s.isOk()) return s;
    if (got != size) {
        return Status::corruption(std::string("stream ")
                                      .append(quoted(file_->nodes[node_].name))
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
    std::vector<std::uint8_t>& bytes = file_->nodes[node_].data;
    if (bytes.size() + size >= 0x80000000u) {
        return Status::invalidArgument("a stream cannot grow past 2 GB");
    }
    const auto* p = static_cast<const std::uint8_t*>(data);
    bytes.insert(bytes.end(), p, p + size);
    return Status::ok();
}

std::uint64_t CompoundStream::size() const {
    if (!file_) return 0;
    return writable_ ? file_->nodes[node_].data.size() : bytes_.size();
}

std::uint64_t CompoundStream::remaining() const {
    return writable_ || !file_ ? 0 : bytes_.size() - position_;
}

void CompoundStream::release() {
    file_.reset();
    bytes_.clear();
    bytes_.shrink_to_fit();
    position_ = 0;
}

Status CompoundStorage::createStream(std::u16string_view name, CompoundStream* out) {
    out->release();
    if (!file_) return Status::invalidArgument("the storage is not open");
    std::uint32_t index = 0;
    Status s = addElement(*file_, node_, name, compound::kTypeStream, &index);
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
    if (index == kNoStream || file_->nodes[index].type != compound::kTypeStream) {
        return noSuch("stream", name);
    }
    if (file_->writable) return Status::invalidArgument("a written stream cannot be read back");
    s = file_->readStream(index, &out->bytes_);
    if (!s.isOk()) return s;
    out->file_ = file_;
    out->node_ = index;
    out->writable_ = false;
    return Status::ok();
}

Status CompoundStorage::createStorage(std::u16string_view name, CompoundStorage* out) {
    out->release();
    if (!file_) return Status::invalidArgument("the storage is not open");
    std::uint32_t index = 0;
    Status s = addElement(*file_, node_, name, compound::kTypeStorage, &index);
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
    if (index == kNoStream || file_->nodes[index].type != compound::kTypeStorage) {
        return noSuch("storage", name);
    }
    out->file_ = file_;
    out->node_ = index;
    return Status::ok();
}

Status CompoundStorage::enumElements(CompoundEnum* out) {
    *out = CompoundEnum();
    if (!file_) return Status::invalidArgument("the storage is not open");
    if (!file_->writable) {
        Status s = file_->listChildren(node_);
        if (!s.isOk()) return s;
        out->elements_ = file_->nodes[node_].children;
    } else {
        out->elements_ = file_->nodes[node_].children;
        std::sort(out->elements_.begin(), out->elements_.end(),
                  [&](std::uint32_t a, std::uint32_t b) {
                      return compound::compareNames(file_->nodes[a].name, file_->nodes[b].name) < 0;
                  });
    }
    out->file_ = file_;
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
    compound::Node root;
    root.type = compound::kTypeRoot;
    root.listed = true;
    impl->nodes.push_back(std::move(root));
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
        // The bytes are on disk: let go of them even while handles remain.
        for (compound::Node& node : impl_->nodes) std::vector<std::uint8_t>().swap(node.data);
    }
    impl_->closed = true;
    return s;
}

}  // namespace qb
