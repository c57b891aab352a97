// Readable output: fields, tables and trees.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace example {

// A field of a record as text. An absent field is "-", which differs from an empty text. A pointer to 16-bit code units
// is always a text, all other pointers are numbers.
std::string shown(const uint16_t *text);
std::string shown(const double *number);

template<class Number>
std::string shown(const Number *number)
{
    return number ? std::to_string(*number) : "-";
}

// Times are in seconds, for the sample data since the start of 1970 in UTC.
std::string shownDate(const uint32_t *time);
std::string shownClock(const uint32_t *time);

void printHeading(const std::string &title);

// Rows with as many cells as there are heads. Prints only the first of many rows.
using Row = std::vector<std::string>;

void printTable(const Row &heads, const std::vector<Row> &rows,
                std::size_t most = std::numeric_limits<std::size_t>::max());

template<class Records, class Flat>
std::vector<Row> rowsOf(const Records &records, Row (*toRow)(const Flat &))
{
    std::vector<Row> rows;
    for (const Flat &record : records)
        rows.push_back(toRow(record));
    return rows;
}

struct Node
{
    std::string text;
    std::vector<Node> children;
};

void printTree(const Node &root);

} // namespace example
