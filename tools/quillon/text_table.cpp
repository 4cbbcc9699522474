// Aligned text and CSV.
#include "text_table.hpp"

#include <algorithm>

namespace quillon::tool {
namespace {

// Display width of UTF-8 text: one column per character.
std::size_t width(const std::string& text)
{
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0u) != 0x80u;
    }));
}

std::string csv_field(const std::string& text)
{
    if (text.find_first_of(",\"\n") == std::string::npos) {
        return text;
    }
    std::string quoted = "\"";
    for (char c : text) {
        quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    }
    return quoted + "\"";
}

} // namespace

TextTable::TextTable(std::vector<std::string> headings)
{
    for (std::string& h : headings) {
        const bool left = !h.empty() && h[0] == '<';
        left_.push_back(left);
        headings_.push_back(left ? h.substr(1) : h);
    }
}

void TextTable::add(std::vector<std::string> cells)
{
    cells.resize(headings_.size());
    rows_.push_back(std::move(cells));
}

std::string TextTable::render(Format format) const
{
    std::string out;
    if (format == Format::csv) {
        auto line = [&out](const std::vector<std::string>& cells) {
            for (std::size_t i = 0; i < cells.size(); ++i) {
                out += (i == 0 ? "" : ",") + csv_field(cells[i]);
            }
            out += '\n';
        };
        line(headings_);
        for (const auto& row : rows_) {
            line(row);
        }
        return out;
    }
    std::vector<std::size_t> widths;
    for (const std::string& h : headings_) {
        widths.push_back(width(h));
    }
    for (const auto& row : rows_) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], width(row[i]));
        }
    }
    auto line = [&](const std::vector<std::string>& cells) {
        std::string text;
        for (std::size_t i = 0; i < cells.size(); ++i) {
            const std::string pad(widths[i] - width(cells[i]), ' ');
            text += i == 0 ? "" : "  ";
            text += left_[i] ? cells[i] + pad : pad + cells[i];
        }
        while (!text.empty() && text.back() == ' ') {
            text.pop_back();
        }
        out += text + '\n';
    };
    line(headings_);
    for (const auto& row : rows_) {
        line(row);
    }
    return out;
}

} // namespace quillon::tool
