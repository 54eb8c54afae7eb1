#include "board/Trace.h"

#include "board/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <sstream>
#include <stdexcept>

namespace zrkboard {

namespace {

constexpr const char* kFirstLine = "# zrk trace 1";
// Far below the range of the clock, so that sums of delays cannot overflow.
constexpr std::chrono::hours kLongest{24 * 366};

[[noreturn]] void damaged(const std::string& why) {
    throw std::invalid_argument(why);
}

// Reads "12.345678".
std::chrono::microseconds timeOf(const std::string& text) {
    constexpr std::size_t kDecimals = 6;
    const auto point = text.find('.');
    std::string digits = text;
    if (point != std::string::npos)
        digits.erase(point, 1);
    std::int64_t microseconds = 0;
    const auto* end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, microseconds);
    if (point == std::string::npos || text.size() != point + 1 + kDecimals || error != std::errc() ||
        stop != end || microseconds < 0)
        damaged(quoted(text) + " is not a time; expected seconds with six decimals");
    const std::chrono::microseconds time(microseconds);
    if (time > kLongest)
        damaged(quoted(text) + " is too late for a trace; expected less than a year");
    return time;
}

// Reads the bytes in front of the bar, two digits each.
std::vector<std::uint8_t> bytesOf(const std::string& text) {
    const auto bar = text.find('|');
    if (bar == std::string::npos || text.find_last_not_of(' ') == bar || text.back() != '|')
        damaged("the bytes are cut off; expected them in hexadecimal and then as text between bars");
    std::vector<std::uint8_t> bytes;
    std::istringstream words(text.substr(0, bar));
    for (std::string word; words >> word;) {
        const auto value = word.size() == 2 ? parseNumber(word, 16) : std::nullopt;
        if (!value)
            damaged(quoted(word) + " is not a byte; expected two hexadecimal digits");
        bytes.push_back(static_cast<std::uint8_t>(*value));
    }
    // The length of the text shows whether a byte was lost.
    if (bytes.empty() || text.size() != bar + 2 + bytes.size())
        damaged("there are " + std::to_string(bytes.size()) +
                " bytes in hexadecimal and another number as text");
    return bytes;
}

std::size_t unsentOf(const std::string& text) {
    std::istringstream words(text);
    std::string word;
    std::string count;
    words >> word >> count;
    const auto value = parseNumber(count);
    if (word != "unsent" || !value)
        damaged("expected \"close unsent\" and a number");
    return static_cast<std::size_t>(*value);
}

// Returns false for lines to skip.
bool parse(const std::string& text, TraceLine& line) {
    static const std::array passedOver{"refused", "handshaking", "dtr"};
    std::istringstream words(text);
    std::string time;
    std::string what;
    words >> time >> what;
    line.at = timeOf(time);
    std::string rest;
    std::getline(words >> std::ws, rest);
    if (what == "<" || what == ">") {
        line.kind = what == "<" ? TraceLine::Kind::FromBoard : TraceLine::Kind::ToBoard;
        line.bytes = bytesOf(rest);
    } else if (what == "open") {
        line.kind = TraceLine::Kind::Opened;
    } else if (what == "lost") {
        line.kind = TraceLine::Kind::Lost;
    } else if (what == "close") {
        line.kind = TraceLine::Kind::Closed;
        line.unsent = unsentOf(rest);
    } else if (std::find(passedOver.begin(), passedOver.end(), what) != passedOver.end()) {
        return false;
    } else {
        damaged(quoted(what) + " is unknown; expected <, >, open, close, lost, refused, handshaking or dtr");
    }
    return true;
}

class Reader {
  public:
    // Reads one line of the file; its faults are thrown without its number.
    void take(const std::string& text) {
        ++m_number;
        if (text == kFirstLine)
            return begin();
        if (m_number == 1)
            damaged(std::string("expected \"") + kFirstLine + "\", so this is no trace");
        TraceLine line;
        line.number = m_number;
        if (text.empty() || text.front() == '#' || !parse(text, line))
            return;
        if (line.at < m_last)
            damaged("its time is before that of the previous line");
        m_last = line.at;
        if (line.kind != TraceLine::Kind::Opened && !m_open)
            damaged("the port is not open here; expected a line with \"open\" first");
        m_open = line.kind != TraceLine::Kind::Closed;
        lines.push_back(std::move(line));
    }

    // A line of a trace that is not replayed.
    void pass() { ++m_number; }

    [[nodiscard]] std::size_t number() const { return m_number; }

    std::vector<TraceLine> lines;

  private:
    void begin() {
        lines.clear();
        m_last = {};
        m_open = false;
    }

    std::size_t m_number = 0;
    std::chrono::microseconds m_last{};
    bool m_open = false;
};

} // namespace

std::vector<TraceLine> readTrace(std::istream& text) {
    Reader reader;
    std::string complaint; // on the trace that begins last
    const auto complain = [&](const std::string& why) {
        complaint = "line " + std::to_string(std::max<std::size_t>(reader.number(), 1)) + ": " + why;
    };
    for (std::string line; std::getline(text, line);) {
        if (line.ends_with('\r'))
            line.pop_back();
        if (line == kFirstLine)
            complaint.clear();
        if (!complaint.empty()) {
            reader.pass();
            continue;
        }
        try {
            reader.take(line);
            if (text.eof())
                damaged("it is cut off; without it the trace can be replayed up to here");
        } catch (const std::invalid_argument& error) {
            complain(error.what());
        }
    }
    if (complaint.empty() && reader.lines.empty())
        complain("no port was opened until here, so there is nothing to replay");
    if (!complaint.empty())
        throw std::invalid_argument(complaint);
    return std::move(reader.lines);
}

} // namespace zrkboard
