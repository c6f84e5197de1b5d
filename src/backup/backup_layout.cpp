#include "backup/backup_layout.h"

#include "platform/compound_file.h"
#include "platform/string_printf.h"
#include "store/time_entry.h"

namespace qb {
namespace {

std::u16string numbered(std::u16string_view prefix, std::uint32_t number) {
    std::u16string name(prefix);
    for (char c : std::to_string(number)) name.push_back(static_cast<char16_t>(c));
    return name;
}

void putU8(std::vector<std::uint8_t>& out, bool value) {
    out.push_back(value ? 1 : 0);
}

}  // namespace

std::u16string recordName(std::uint32_t number) {
    return numbered(u"Record", number);
}
std::u16string clientName(std::uint32_t number) {
    return numbered(u"Client", number);
}

void putU32(std::vector<std::uint8_t>& out, std::uint32_t value) {
    for (int i = 0; i < 4; ++i) out.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}

void putCountedString(std::vector<std::uint8_t>& out, std::u16string_view text) {
    putU32(out, static_cast<std::uint32_t>(text.size()));
    for (char16_t u : text) {
        out.push_back(static_cast<std::uint8_t>(u));
        out.push_back(static_cast<std::uint8_t>(u >> 8));
    }
}

void encodeEntry(const TimeEntry& e, std::vector<std::uint8_t>* out) {
    std::vector<std::uint8_t>& b = *out;
    b.clear();
    putU8(b, e.billable);
    putU8(b, e.paid);
    putU32(b, static_cast<std::uint32_t>(e.date));
    putU32(b, static_cast<std::uint32_t>(e.date >> 32));
    putCountedString(b, e.client);
    putCountedString(b, e.project);
    putCountedString(b, e.phase);
    putCountedString(b, e.task);
    putCountedString(b, e.currency);
    putU32(b, e.duration);
    putU32(b, e.rate);
    putU32(b, e.rateType);
    putCountedString(b, e.billTo);
    putCountedString(b, e.custom1);
    putCountedString(b, e.custom2);
    putCountedString(b, e.custom3);
    putU32(b, static_cast<std::uint32_t>(e.notesSize()));
    b.insert(b.end(), e.notes.begin(), e.notes.end());
}

void encodeCountedString(std::u16string_view text, std::vector<std::uint8_t>* out) {
    out->clear();
    putCountedString(*out, text);
}

void encodeProjectTasks(const std::vector<ProjectRecord>& items, std::vector<std::uint8_t>* out) {
    out->clear();
    putU32(*out, static_cast<std::uint32_t>(items.size()));
    for (const ProjectRecord& p : items) {
        putCountedString(*out, p.project);
        putCountedString(*out, p.task);
    }
}

void encodeNames(const std::vector<NamedRecord>& items, std::vector<std::uint8_t>* out) {
    out->clear();
    putU32(*out, static_cast<std::uint32_t>(items.size()));
    for (const NamedRecord& n : items) putCountedString(*out, n.name);
}

void encodeRates(const std::vector<RateRecord>& items, std::vector<std::uint8_t>* out) {
    out->clear();
    putU32(*out, static_cast<std::uint32_t>(items.size()));
    for (const RateRecord& r : items) {
        putU32(*out, r.rateType);
        putU32(*out, r.rate);
        putCountedString(*out, r.description);
        putU8(*out, r.flag);
    }
}

Status FieldReader::shortOf(const char* field, std::uint64_t needed) {
    return Status::corruption(stringPrintf("%s needs %llu bytes, only %llu are left", field,
                                           static_cast<unsigned long long>(needed),
                                           static_cast<unsigned long long>(stream_.remaining())));
}

Status FieldReader::u8(const char* field, std::uint8_t* out) {
    if (stream_.remaining() < 1) return shortOf(field, 1);
    return stream_.readExact(out, 1);
}

Status FieldReader::u32(const char* field, std::uint32_t* out) {
    std::uint8_t raw[4];
    if (stream_.remaining() < 4) return shortOf(field, 4);
    Status s = stream_.readExact(raw, 4);
    if (!s.isOk()) return s;
    *out = std::uint32_t{raw[0]} | std::uint32_t{raw[1]} << 8 | std::uint32_t{raw[2]} << 16 |
           std::uint32_t{raw[3]} << 24;
    return Status::ok();
}

Status FieldReader::countedString(const char* field, std::u16string* out) {
    std::uint32_t units = 0;
    Status s = u32(field, &units);
    if (!s.isOk()) return s;
    std::uint64_t bytes = std::uint64_t{units} * 2;
    if (stream_.remaining() < bytes) return shortOf(field, bytes);
    // Read straight into the string, then put each unit in the host's order:
    // no buffer per field.
    out->resize(units);
    s = stream_.readExact(out->data(), static_cast<std::size_t>(bytes));
    if (!s.isOk()) return s;
    const auto* raw = reinterpret_cast<const std::uint8_t*>(out->data());
    for (std::uint32_t i = 0; i < units; ++i) {
        (*out)[i] = static_cast<char16_t>(raw[2 * i] | raw[2 * i + 1] << 8);
    }
    return Status::ok();
}

Status FieldReader::count(const char* field, std::size_t minItemSize, std::uint32_t* out) {
    Status s = u32(field, out);
    if (!s.isOk()) return s;
    std::uint64_t needed = std::uint64_t{*out} * minItemSize;
    if (stream_.remaining() < needed) return shortOf(field, needed);
    return Status::ok();
}

Status FieldReader::bytes(const char* field, std::size_t size, std::vector<std::uint8_t>* out) {
    if (stream_.remaining() < size) return shortOf(field, size);
    out->resize(size);
    return size == 0 ? Status::ok() : stream_.readExact(out->data(), size);
}

Status decodeEntry(FieldReader& r, TimeEntry* e) {
    resetEntry(*e);
    std::uint8_t flag = 0;
    std::uint32_t low = 0;
    std::uint32_t high = 0;
    std::uint32_t number = 0;
    Status s = r.u8("billable", &flag);
    e->billable = flag != 0;
    if (s.isOk()) s = r.u8("paid", &flag);
    e->paid = flag != 0;
    if (s.isOk()) s = r.u32("date", &low);
    if (s.isOk()) s = r.u32("date", &high);
    e->date = FILETIME{high} << 32 | low;
    if (s.isOk()) s = r.countedString("client", &e->client);
    if (s.isOk()) s = r.countedString("project", &e->project);
    if (s.isOk()) s = r.countedString("phase", &e->phase);
    if (s.isOk()) s = r.countedString("task", &e->task);
    if (s.isOk()) s = r.countedString("currency", &e->currency);
    if (s.isOk()) s = r.u32("duration", &number);
    e->duration = static_cast<std::uint16_t>(number);
    if (s.isOk()) s = r.u32("rate", &e->rate);
    if (s.isOk()) s = r.u32("rateType", &number);
    e->rateType = static_cast<std::uint16_t>(number);
    if (s.isOk()) s = r.countedString("billTo", &e->billTo);
    if (s.isOk()) s = r.countedString("custom1", &e->custom1);
    if (s.isOk()) s = r.countedString("custom2", &e->custom2);
    if (s.isOk()) s = r.countedString("custom3", &e->custom3);
    if (s.isOk()) s = r.u32("notes length", &number);
    if (s.isOk() && static_cast<std::int32_t>(number) >= 1) s = r.bytes("notes", number, &e->notes);
    return s;
}

Status decodeProjectTasks(FieldReader& r, std::vector<ProjectRecord>* out) {
    out->clear();
    std::uint32_t n = 0;
    Status s = r.count("count", 8, &n);
    for (std::uint32_t i = 0; s.isOk() && i < n; ++i) {
        ProjectRecord p;
        s = r.countedString("project", &p.project);
        if (s.isOk()) s = r.countedString("task", &p.task);
        out->push_back(std::move(p));
    }
    return s;
}

Status decodeNames(FieldReader& r, std::vector<NamedRecord>* out) {
    out->clear();
    std::uint32_t n = 0;
    Status s = r.count("count", 4, &n);
    for (std::uint32_t i = 0; s.isOk() && i < n; ++i) {
        NamedRecord item;
        s = r.countedString("name", &item.name);
        out->push_back(std::move(item));
    }
    return s;
}

Status decodeRates(FieldReader& r, std::vector<RateRecord>* out) {
    out->clear();
    std::uint32_t n = 0;
    Status s = r.count("count", 13, &n);
    for (std::uint32_t i = 0; s.isOk() && i < n; ++i) {
        RateRecord rate;
        std::uint32_t type = 0;
        std::uint8_t flag = 0;
        s = r.u32("rate type", &type);
        rate.rateType = static_cast<std::uint16_t>(type);
        if (s.isOk()) s = r.u32("rate", &rate.rate);
        if (s.isOk()) s = r.countedString("description", &rate.description);
        if (s.isOk()) s = r.u8("flag", &flag);
        rate.flag = flag != 0;
        out->push_back(std::move(rate));
    }
    return s;
}

}  // namespace qb
