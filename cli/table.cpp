#include "cli/table.h"

#include <algorithm>

#include "tripkit/display_text.h"

namespace roamwise::cli {

namespace {

constexpr std::size_t kNoteIndent = 6;

struct Cell {
    std::string text;
    std::size_t width = 0;
};

Cell cell(std::string_view text) {
    Cell c{tripkit::DisplayText::escaped(text)};
    c.width = tripkit::DisplayText::width(c.text);
    return c;
}

}  // namespace

void Table::add(std::vector<std::string> cells, std::string note) {
    rows.push_back({std::move(cells), std::move(note)});
}

void Table::print(std::ostream& out) const {
    std::vector<std::vector<Cell>> lines;
    if (titles) {
        std::vector<Cell> line;
        for (const Column& c : columns) line.push_back(cell(c.title));
        lines.push_back(std::move(line));
    }
    for (const Row& row : rows) {
        std::vector<Cell> line;
        for (std::size_t i = 0; i < columns.size(); ++i) {
            line.push_back(cell(i < row.cells.size() ? row.cells[i] : ""));
        }
        lines.push_back(std::move(line));
    }
    std::vector<std::size_t> widths;
    for (const Column& c : columns) widths.push_back(c.minWidth);
    for (const auto& line : lines) {
        for (std::size_t i = 0; i < line.size(); ++i)
            widths[i] = std::max(widths[i], line[i].width);
    }

    auto printLine = [&](const std::vector<Cell>& line) {
        std::string text(indent, ' ');
        for (std::size_t i = 0; i < line.size(); ++i) {
            if (i > 0) text.append(columns[i].gap, ' ');
            const std::string padding(widths[i] - line[i].width, ' ');
            if (columns[i].align == Align::right) text += padding;
            text += line[i].text;
            if (columns[i].align == Align::left) text += padding;
        }
        text.erase(text.find_last_not_of(' ') + 1);
        out << text << '\n';
    };
    std::size_t next = 0;
    if (titles) printLine(lines[next++]);
    for (const Row& row : rows) {
        printLine(lines[next++]);
        if (!row.note.empty()) {
            out << std::string(indent + kNoteIndent, ' ') << shown(row.note) << '\n';
        }
    }
}

std::string shown(std::string_view text) {
    return tripkit::DisplayText::escaped(text);
}

}  // namespace roamwise::cli
