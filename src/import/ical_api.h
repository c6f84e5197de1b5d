#pragma once

// The iCalendar library, loaded when a command first needs it rather than
// with the program: it brings a Unicode library that would add milliseconds
// to the start of every command. Its functions are called through ical():
// ical().icalparser_parse_string(...).

#include <libical/ical.h>

#include <string>

namespace qb {

// Every function of the library that the iCalendar reader and writer use.
#define QB_ICAL_FUNCTIONS(X)             \
    X(icalcomponent_add_property)        \
    X(icalcomponent_as_ical_string_r)    \
    X(icalcomponent_free)                \
    X(icalcomponent_get_description)     \
    X(icalcomponent_get_dtend)           \
    X(icalcomponent_get_dtstart)         \
    X(icalcomponent_get_due)             \
    X(icalcomponent_get_first_component) \
    X(icalcomponent_get_first_property)  \
    X(icalcomponent_get_next_component)  \
    X(icalcomponent_get_next_property)   \
    X(icalcomponent_get_summary)         \
    X(icalcomponent_get_uid)             \
    X(icalcomponent_isa)                 \
    X(icalcomponent_new)                 \
    X(icaldurationtype_as_ical_string)   \
    X(icaldurationtype_as_int)           \
    X(icaldurationtype_from_int)         \
    X(icaldurationtype_from_string)      \
    X(icaldurationtype_is_bad_duration)  \
    X(icalmemory_free_buffer)            \
    X(icalparser_parse_string)           \
    X(icalproperty_get_categories)       \
    X(icalproperty_get_comment)          \
    X(icalproperty_get_duration)         \
    X(icalproperty_get_relatedto)        \
    X(icalproperty_get_value_as_string)  \
    X(icalproperty_get_x)                \
    X(icalproperty_get_x_name)           \
    X(icalproperty_get_xlicerror)        \
    X(icalproperty_new_description)      \
    X(icalproperty_new_dtend)            \
    X(icalproperty_new_dtstamp)          \
    X(icalproperty_new_dtstart)          \
    X(icalproperty_new_duration)         \
    X(icalproperty_new_summary)          \
    X(icalproperty_new_uid)              \
    X(icalproperty_new_x)                \
    X(icalproperty_set_x_name)           \
    X(icaltime_adjust)                   \
    X(icaltime_as_ical_string)           \
    X(icaltime_as_timet)                 \
    X(icaltime_as_timet_with_zone)       \
    X(icaltime_from_string)              \
    X(icaltime_from_timet_with_zone)     \
    X(icaltime_is_null_time)             \
    X(icaltime_is_utc)                   \
    X(icaltime_null_time)                \
    X(icaltimezone_get_utc_timezone)

struct IcalApi {
#define QB_ICAL_POINTER(name) decltype(&::name) name = nullptr;
    QB_ICAL_FUNCTIONS(QB_ICAL_POINTER)
#undef QB_ICAL_POINTER
};

// Loads the library once; false (with the reason) when it cannot be loaded.
bool loadIcal(std::string* why = nullptr);
// The library's functions; loadIcal() must have answered true.
const IcalApi& ical();

}  // namespace qb
