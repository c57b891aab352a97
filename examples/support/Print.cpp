#include "Print.h"

#include "Texts.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <iostream>

namespace example {
namespace {

// The width of a code point on a terminal: 0 for a combining accent, 2 for East Asian characters.
std::size_t columnsOf(char32_t codePoint)
{
    if (codePoint >= 0x300 && codePoint < 0x370)
        return 0;
    const bool isWide = (codePoint >= 0x1100 && codePoint < 0x1160) || (codePoint >= 0x2E80 && codePoint < 0xA4D0)
                     || (codePoint >= 0xAC00 && codePoint < 0xD7A4) || (codePoint >= 0xF900 && codePoint < 0xFB00)
                     || (codePoint >= 0xFE30 && codePoint < 0xFE70) || (codePoint >= 0xFF00 && codePoint < 0xFF61)
                     || (codePoint >= 0x1F300 && codePoint < 0x1FB00) || (codePoint >= 0x20000 && codePoint < 0x30000);
    return isWide ? 2 : 1;
}

std::size_t columnsOf(const std::string &text)
{
    std::size_t columns = 0;
    for (const char32_t codePoint : codePointsOf(text))
        columns += columnsOf(codePoint);
    return columns;
}

void printRow(const Row &row, const std::vector<std::size_t> &widths)
{
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i)
        line += "  " + row[i] + std::string(widths[i] - columnsOf(row[i]), ' ');
    line.erase(line.find_last_not_of(' ') + 1);
    std::cout << line << '\n';
}

void printChildren(const Node &node, const std::string &indent)
{
    for (const Node &child : node.children) {
        const bool isLast = &child == &node.children.back();
        std::cout << indent << (isLast ? "└─ " : "├─ ") << child.text << '\n';
        printChildren(child, indent + (isLast ? "   " : "│  "));
    }
}

std::string formatTime(const uint32_t *time, const char *format)
{
    if (!time)
        return "-";
    const std::time_t seconds = *time;
    char text[32];
    return std::string(text, std::strftime(text, sizeof text, format, std::gmtime(&seconds)));
}

} // namespace

std::string shown(const uint16_t *text)
{
    return text ? toUtf8(text) : "-";
}

std::string shown(const double *number)
{
    if (!number)
        return "-";
    char text[32];
    std::snprintf(text, sizeof text, "%.5f", *number);
    return text;
}

std::string shownDate(const uint32_t *time)
{
    return formatTime(time, "%Y-%m-%d");
}

std::string shownClock(const uint32_t *time)
{
    return formatTime(time, "%H:%M:%S");
}

void printHeading(const std::string &title)
{
    std::cout << '\n' << title << '\n' << std::string(columnsOf(title), '=') << '\n';
}

void printTable(const Row &heads, const std::vector<Row> &rows, std::size_t most)
{
    const auto end = rows.begin() + static_cast<std::ptrdiff_t>(std::min(most, rows.size()));
    std::vector<std::size_t> widths(heads.size());
    Row rule;
    for (std::size_t i = 0; i < heads.size(); ++i) {
        widths[i] = columnsOf(heads[i]);
        for (auto row = rows.begin(); row != end; ++row)
            widths[i] = std::max(widths[i], columnsOf((*row)[i]));
        rule.emplace_back(widths[i], '-');
    }
    printRow(heads, widths);
    printRow(rule, widths);
    for (auto row = rows.begin(); row != end; ++row)
        printRow(*row, widths);
    if (end != rows.end())
        std::cout << "  ... and " << rows.end() - end << " more\n";
}

void printTree(const Node &root)
{
    std::cout << "  " << root.text << '\n';
    printChildren(root, "  ");
}

} // namespace example
