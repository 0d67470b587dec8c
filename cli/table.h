// Every table roamwise-cli prints: columns aligned by the width the text
// takes in a terminal, and every cell escaped so that text from a data file
// cannot move the cursor, clear the screen or reverse the line.
#pragma once

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace roamwise::cli {

struct Table {
    enum class Align { left, right };
    struct Column {
        std::string title;
        Align align = Align::left;
        std::size_t minWidth = 0;
        std::size_t gap = 1;  // spaces before the column (none before the first)
    };
    struct Row {
        std::vector<std::string> cells;
        std::string note;  // a line of its own under the row, indented; empty: none
    };

    std::vector<Column> columns;
    std::vector<Row> rows;
    bool titles = true;      // print the column titles as the first line
    std::size_t indent = 0;  // spaces before every line

    void add(std::vector<std::string> cells, std::string note = "");
    // Lines end without trailing spaces; missing cells print empty.
    void print(std::ostream& out) const;
};

// Text from data for a line of its own (not a table cell), escaped like a cell.
std::string shown(std::string_view text);

}  // namespace roamwise::cli
