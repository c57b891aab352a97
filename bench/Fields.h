// The contents of the documents of the workloads: the keys of a record, in the order in which an insert binds them.
#pragma once

#include <cmath>
#include <cstdint>
#include <string_view>

namespace bench {

enum class Kind {
    Id,     // required
    UInt32, // a number, keeps the low 32 bits
    Int32,  // a whole number, else 0
    Byte,   // a whole number, keeps the low 8 bits
    UInt64,
    Flag, // a whole number other than 0 is true; a boolean is accepted and reads as false
    Text,
};

struct Field
{
    std::string_view key;
    Kind kind;
};

inline constexpr Field eventFields[] = {
    {"id", Kind::Id},
    {"time", Kind::UInt32},
    {"device", Kind::Int32},
    {"section", Kind::UInt32},
    {"zone", Kind::UInt32},
    {"active", Kind::Byte},
    {"class", Kind::Byte},
    {"detector", Kind::Byte},
    {"reason", Kind::Byte},
    {"localtime", Kind::UInt32},
    {"channel", Kind::Int32},
    {"data", Kind::Text},
    {"review_id", Kind::UInt32},
    {"review_state", Kind::Byte},
    {"operator_id", Kind::UInt32},
    {"is_closed", Kind::Flag},
    {"affect", Kind::Flag},
    {"jdata", Kind::Text},
};

inline constexpr Field deviceFields[] = {
    {"id", Kind::Id},       {"account", Kind::UInt32},    {"domain", Kind::UInt32}, {"config_version", Kind::UInt32},
    {"parted", Kind::Flag}, {"cluster_id", Kind::UInt32},
};

inline constexpr Field sectionFields[] = {
    // after the id of the device
    {"id", Kind::Id},        {"name", Kind::Text},       {"schedule_id", Kind::UInt32}, {"tracert", Kind::UInt32},
    {"flags", Kind::UInt32}, {"detector", Kind::UInt32}, {"arm", Kind::UInt32},         {"physic", Kind::UInt32},
    {"form", Kind::UInt32},  {"delay", Kind::UInt32},    {"uid_type", Kind::UInt32},
};

inline constexpr Field zoneFields[] = {
    // after the ids of the device and the section
    {"id", Kind::Id},          {"name", Kind::Text},       {"detector", Kind::UInt32}, {"physic", Kind::UInt32},
    {"form", Kind::UInt32},    {"flags", Kind::UInt32},    {"delay", Kind::UInt32},    {"schedule_id", Kind::UInt32},
    {"tracert", Kind::UInt32}, {"uid_type", Kind::UInt32}, {"arm", Kind::UInt32},
};

inline constexpr Field deviceUserFields[] = {
    // after the id of the device
    {"user_index", Kind::Id},
    {"name", Kind::Text},
    {"comment", Kind::Text},
    {"phone", Kind::Text},
};

inline constexpr Field userFields[] = {
    {"id", Kind::Id},         {"name", Kind::Text},    {"login", Kind::Text},
    {"contacts", Kind::Text}, {"active", Kind::Flag},  {"domain", Kind::UInt32},
    {"org", Kind::UInt32},    {"roles", Kind::UInt32}, {"phone", Kind::UInt64},
};

// ---- Number conversion ----

inline uint32_t lowBits(double number)
{
    return static_cast<uint32_t>(static_cast<int64_t>(number));
}

inline int32_t wholeNumber(double number)
{
    const bool isWhole = number >= -2147483648.0 && number <= 2147483647.0 && std::trunc(number) == number;
    return isWhole ? static_cast<int32_t>(number) : 0;
}

} // namespace bench
