#include "board/program/CommandLine.h"

#include "board/Text.h"

#include <limits>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace zrkboard {

namespace {

using Text = const std::string&;

// Reads one option's value into the options; throws std::invalid_argument that says what is wrong.
using Setter = void (*)(ProgramOptions& options, Text value);

struct Option {
    const char* name;
    const char* value; // null: takes none
    const char* help;  // one or more lines
    Setter set;
};

std::uint64_t number(Text text, std::uint64_t least, std::uint64_t most) {
    const auto value = parseNumber(text);
    if (!value || *value < least || *value > most)
        throw std::invalid_argument("expected a number from " + std::to_string(least) + " to " +
                                    std::to_string(most));
    return *value;
}

std::uint64_t count(Text text) {
    return number(text, 1, std::numeric_limits<std::uint32_t>::max());
}

Duration time(Text text) {
    const auto value = parseMilliseconds(text);
    if (!value)
        throw std::invalid_argument("expected a time in seconds (0.5) or milliseconds (500ms)");
    return std::chrono::milliseconds(*value);
}

std::string escapedText(Text text) {
    const auto plain = unescape(text);
    if (!plain)
        throw std::invalid_argument("expected r, n, t, a backslash, or x and two digits after a backslash");
    return *plain;
}

std::string path(Text text) {
    if (text.empty())
        throw std::invalid_argument("expected a path");
    return text;
}

void setBaud(ProgramOptions& options, Text value) {
    options.lineRate = static_cast<std::uint32_t>(number(value, 50, 20'000'000) / 10);
    options.board.lineRate = options.lineRate;
}

Misbehaviour& misbehaviour(ProgramOptions& options) {
    return options.board.misbehaviour;
}

const std::vector<Option>& generalOptions() {
    static const std::vector<Option> all{
        {"link", "PATH",
         "make a symbolic link to the device and remove it at exit;\n"
         "a link that a running board uses is not replaced",
         [](ProgramOptions& o, Text v) { o.link = path(v); }},
        {"baud", "N", "speed of the line, N/10 bytes a second (115200)", setBaud},
        {"unpaced", nullptr, "no line: bytes pass at once", [](ProgramOptions& o, Text) { o.lineRate = 0; }},
        {"adapter-latency", "SECONDS", "latency timer of a USB adapter, for example 16ms (0)",
         [](ProgramOptions& o, Text v) { o.adapterLatency = time(v); }},
        {"power-on-delay", "SECONDS", "from power-on to the first BootID (0.5)",
         [](ProgramOptions& o, Text v) { o.board.powerOnDelay = time(v); }},
        {"bootid-interval", "SECONDS", "from BootID to BootID (0.5)",
         [](ProgramOptions& o, Text v) {
             o.board.bootIdInterval = time(v);
             if (o.board.bootIdInterval == Duration::zero())
                 throw std::invalid_argument("expected a time above 0");
         }},
        {"start-delay", "SECONDS", "from the start of a program to its first byte (0.1)",
         [](ProgramOptions& o, Text v) { o.board.startDelay = time(v); }},
        {"off", nullptr, "begin without power, which SIGUSR1 switches on",
         [](ProgramOptions& o, Text) { o.off = true; }},
        {"power-cycles", "N", "exit when the N-th run has ended (see below)",
         [](ProgramOptions& o, Text v) { o.powerCycles = static_cast<unsigned>(count(v)); }},
        {"patience", "SECONDS",
         "cycle the power when a loader that has opened the port sends\n"
         "nothing for so long (2; 0 = never; see below)",
         [](ProgramOptions& o, Text v) { o.patience = time(v); }},
        {"nand", "FILE", "keep the NAND there (64 MiB; made and erased if missing or empty)",
         [](ProgramOptions& o, Text v) { o.nandFile = path(v); }},
        {"erase-time", "SECONDS", "how long a full erase takes (2)",
         [](ProgramOptions& o, Text v) { o.board.eraseTime = time(v); }},
        {"version-text", "TEXT", "version that the flash programmer reports",
         [](ProgramOptions& o, Text v) { o.board.versionText = escapedText(v); }},
        {"dump-sdram", "FILE", "write the SDRAM there at exit",
         [](ProgramOptions& o, Text v) { o.sdramDump = path(v); }},
        {"dump-iram", "FILE", "write the IRAM there at exit",
         [](ProgramOptions& o, Text v) { o.iramDump = path(v); }},
        {"make-images", "DIR",
         "write sample images and an INI file for them, and exit;\n"
         "existing files with other content are kept",
         [](ProgramOptions& o, Text v) { o.imagesFolder = path(v); }},
        {"replay", "FILE",
         "answer as the board in this trace did, and end with it: with\n"
         "status 1 and the place if the loader sent anything else",
         [](ProgramOptions& o, Text v) { o.replayFile = path(v); }},
        {"verbose", nullptr, "print on stderr what the board receives and does",
         [](ProgramOptions& o, Text) { o.verbose = true; }},
        {"help", nullptr, "print this help", [](ProgramOptions& o, Text) { o.help = true; }},
        {"version", nullptr, "print the version", [](ProgramOptions& o, Text) { o.version = true; }},
    };
    return all;
}

const std::vector<Option>& misbehaviourOptions() {
    static const std::vector<Option> all{
        {"fault", "FAULT", "a fault at one step, see below; may be given several times",
         [](ProgramOptions& o, Text v) { misbehaviour(o).faults.push_back(parseFault(v)); }},
        {"faults", "SEED[,KIND=P...]", "a bad wire, see below",
         [](ProgramOptions& o, Text v) { o.wireFaults = parseWireFaults(v); }},
        {"faulty-runs", "N", "misbehave in the first N runs only",
         [](ProgramOptions& o, Text v) { o.board.faultyRuns = static_cast<unsigned>(count(v)); }},
        {"noise", "TEXT", "send TEXT before the first BootID (\\r \\n \\t \\\\ \\xHH)",
         [](ProgramOptions& o, Text v) { misbehaviour(o).noise = escapedText(v); }},
        {"answer-delay", "SECONDS", "before every answer but the BootID",
         [](ProgramOptions& o, Text v) { misbehaviour(o).answerDelay = time(v); }},
        {"version-length", "N",
         "length that the version frame states; its text is fitted\n"
         "to that from 9 to 32767",
         [](ProgramOptions& o, Text v) {
             misbehaviour(o).versionLength = static_cast<std::uint32_t>(number(v, 0, 0xFFFFFFFF));
         }},
        {"hang-up-after", "N", "pull the adapter when N code bytes have come in",
         [](ProgramOptions& o, Text v) { misbehaviour(o).hangUpAfterCode = count(v); }},
        {"hang-up-after-bytes", "N", "the same, counting every byte received",
         [](ProgramOptions& o, Text v) { misbehaviour(o).hangUpAfterReceived = count(v); }},
        {"hang-up-at", "SECONDS", "the same, so long after power-on",
         [](ProgramOptions& o, Text v) { misbehaviour(o).hangUpAt = time(v); }},
        {"lose-byte", "N", "the N-th code byte never arrives",
         [](ProgramOptions& o, Text v) { misbehaviour(o).loseCodeByte = count(v); }},
    };
    return all;
}

const Option& findOption(Text name) {
    for (const auto* options : {&generalOptions(), &misbehaviourOptions()}) {
        for (const Option& option : *options) {
            if (name == option.name)
                return option;
        }
    }
    throw std::invalid_argument("unknown option --" + name);
}

void printOptions(std::ostream& out, const std::vector<Option>& options) {
    constexpr std::size_t kHelpColumn = 30;
    for (const Option& option : options) {
        std::string left = std::string("  --") + option.name;
        if (option.value != nullptr)
            left += std::string(" ") + option.value;
        std::istringstream help(option.help);
        for (std::string line; std::getline(help, line); left.clear()) {
            left.resize(kHelpColumn, ' ');
            out << left << line << '\n';
        }
    }
}

constexpr const char* kHelpHead = R"(Usage: zrk-board [OPTION]...
A simulated ZRK6924 demo board on a pseudo-terminal. Prints the path of the device that a loader opens.

)";

constexpr const char* kHelpFaults = R"(
FAULT is STEP[#TIMES]=KIND. The steps, in the order of a run:
  bootid, second-bootid, R       boot ROM
  X, accept ("o"), t             primary boot
  F, version, ack-header, ack-data, ack-end, ack-complete
                                 flash programmer
#2 means only the second time since power-on, and so on; without it every time. The kinds:
  wrong[@OFFSET][:BYTE]          one byte of the answer is another one: BYTE, a character or 0xHH (?), at OFFSET
                                 within the answer (0)
  none                           no answer, and the board goes on as if it had answered
  late:SECONDS                   the answer comes later
  refuse                         "E" instead of the answer, and the board does not go on
Examples: --fault accept#2=refuse   --fault ack-data=wrong@7:0x00   --fault R=late:6

--faults makes the wire itself bad, at bytes that SEED chooses: the same seed does the same to the same bytes.
P is the probability at each byte, 0 to 1; without one, each kind happens now and then. The kinds, for both directions or
as to-board-KIND and to-loader-KIND for one:
  flip, loss, double, replace    one bit is another; the byte is lost, comes twice, is any other one
  delay                          it and what follows come up to 3 seconds later
  noise                          up to 8 bytes of anything before it
  silence                        it and up to 1023 more are lost
  hang-up                        the adapter is gone
  wrong-answer                   to the loader only: another answer of the board
The faults are counted on stderr at the end, and shown byte by byte with --verbose.
Example: --faults 7,flip=0.0001,to-loader-loss=0.01
Counts of bytes begin at 1 and at power-on; code bytes are the image bytes, without headers and frame bytes.
)";

constexpr const char* kHelpRuns = R"(
A run begins at power-on and ends with the next one. The power is cycled
  - by `reset` at the secondary program's prompt;
  - by SIGUSR1;
  - when the loader closes the port while the board is in the middle of something, has fallen silent, or has
    programmed its flash. A primary boot that waits for commands and a secondary program go on running;
  - when a loader has opened the port, has sent nothing for the time of --patience, has not switched on XON/XOFF as
    a terminal does, and the board is not at its boot ROM: the loader waits for a BootID then;
  - one second after a hang-up, when a new device is there (its path is printed, the link leads to it). SIGUSR2 is a
    hang-up too.
Memories keep their contents. SIGTERM, SIGINT and SIGHUP end the program with status 0; 1 is a failure, 2 a wrong option.
What the board sends while no loader has the port open is lost, as on a real line.
)";

} // namespace

ProgramOptions parseCommandLine(std::span<const std::string> arguments) {
    ProgramOptions options;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        Text argument = arguments[i];
        if (!argument.starts_with("--") || argument.size() == 2)
            throw std::invalid_argument("\"" + argument + "\" is not an option");
        const auto equals = argument.find('=');
        const Option& option =
            findOption(argument.substr(2, equals == std::string::npos ? equals : equals - 2));
        std::string value;
        if (option.value == nullptr && equals != std::string::npos)
            throw std::invalid_argument(std::string("--") + option.name + " takes no value");
        if (option.value != nullptr) {
            if (equals == std::string::npos && ++i == arguments.size())
                throw std::invalid_argument(argument + " needs a value: " + option.value);
            value = equals == std::string::npos ? arguments[i] : argument.substr(equals + 1);
        }
        try {
            option.set(options, value);
        } catch (const std::invalid_argument& error) {
            throw std::invalid_argument(std::string("--") + option.name + " " + value + ": " + error.what());
        }
    }
    if (options.replayFile &&
        (options.nandFile || options.sdramDump || options.iramDump || options.powerCycles != 0 ||
         !options.board.misbehaviour.faults.empty() || options.wireFaults))
        throw std::invalid_argument("--replay answers from the trace: no memories, faults and power "
                                    "cycles go with it");
    return options;
}

std::string helpText() {
    std::ostringstream out;
    out << kHelpHead;
    printOptions(out, generalOptions());
    out << "\nMisbehaviour:\n";
    printOptions(out, misbehaviourOptions());
    out << kHelpFaults << kHelpRuns;
    return out.str();
}

std::string versionText() {
    return "zrk-board " ZRK_VERSION "\n";
}

} // namespace zrkboard
