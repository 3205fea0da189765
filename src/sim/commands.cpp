#include "sim/commands.h"

#include <algorithm>
#include <bit>
#include <optional>

namespace kavorix::sim {

namespace {

// What follows the two letters of a statement.
enum class Form {
    Nothing,
    Digit,    // one digit, argument
    Digits,   // up to three digits, argument
    Channel,  // up to three digits, channel
    Numbers,  // `numbers` singles
    Table,    // one digit, then `numbers` singles
    Mode,     // two characters, then the range digits
    Group     // a digit and member alarms
};

struct Row {
    std::string_view mnemonic;
    Verb verb;
    Form form;
    std::size_t numbers = 0;
};

constexpr std::array<Row, 22> PodStatements = {{
    {"TR", Verb::Trigger, Form::Nothing},
    {"HA", Verb::Halt, Form::Nothing},
    {"RE", Verb::Reset, Form::Nothing},
    {"ST", Verb::Status, Form::Nothing},
    {"SE", Verb::Setup, Form::Nothing},
    {"AR", Verb::Arm, Form::Nothing},
    {"CO", Verb::Continuous, Form::Nothing},
    {"ME", Verb::Measure, Form::Channel},
    {"IN", Verb::InitialiseStrain, Form::Channel},
    {"EV", Verb::Events, Form::Digit},
    {"CL", Verb::ClearCount, Form::Channel},
    {"SP", Verb::ScanPeriod, Form::Numbers, 1},
    {"KA", Verb::Calibration, Form::Digit},
    {"FR", Verb::Integration, Form::Digit},
    {"UN", Verb::Units, Form::Digit},
    {"AM", Verb::AmbientReference, Form::Nothing},
    {"TE", Verb::ExternalReference, Form::Numbers, 1},
    {"TC", Verb::OpenCheck, Form::Digit},
    {"UT", Verb::UserTable, Form::Table, 12},
    {"PL", Verb::Equation, Form::Table, 6},
    {"HW", Verb::HardwareWatch, Form::Digit},
    {"SW", Verb::SoftwareWatch, Form::Digits},
}};

constexpr std::array<Row, 9> ChannelStatements = {{
    {"MO", Verb::ChannelMode, Form::Mode},
    {"GA", Verb::GaugeFactor, Form::Numbers, 1},
    {"OF", Verb::StrainOffset, Form::Numbers, 2},
    {"RA", Verb::SampleRate, Form::Digit},
    {"TI", Verb::Timeout, Form::Digit},
    {"PL", Verb::ChannelEquation, Form::Digit},
    {"HL", Verb::HighAlarm, Form::Numbers, 2},
    {"LL", Verb::LowAlarm, Form::Numbers, 2},
    {"GO", Verb::GroupOutput, Form::Group},
}};

constexpr bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

class Reader {
  public:
    explicit Reader(std::string_view rest) : rest_(rest) {}

    // Goes to the next statement that is not empty; false when there is none.
    bool find_statement() {
        rest_.remove_prefix(std::min(rest_.find_first_not_of(';'), rest_.size()));
        return !rest_.empty();
    }

    Statement next() {
        Statement statement;
        statement.mnemonic = take_characters(2);
        if (statement.mnemonic == "CH") {
            const auto channel = digits(2);
            statement.names_channel = true;
            statement.channel = channel.value_or(0);
            statement.mnemonic = take_characters(2);
            statement.refusal =
                channel ? read_form(statement, ChannelStatements) : Refusal::Unknown;
        } else {
            statement.refusal = read_form(statement, PodStatements);
        }
        if (!end_statement() && statement.refusal == Refusal::None)
            statement.refusal = Refusal::Argument;
        return statement;
    }

  private:
    template <std::size_t Count>
    Refusal read_form(Statement& statement, const std::array<Row, Count>& rows) {
        const auto row = std::find_if(rows.begin(), rows.end(), [&](const Row& candidate) {
            return candidate.mnemonic == statement.mnemonic;
        });
        if (row == rows.end()) return Refusal::Unknown;
        statement.verb = row->verb;
        return read_argument(statement, *row) ? Refusal::None : Refusal::Argument;
    }

    bool read_argument(Statement& statement, const Row& row) {
        switch (row.form) {
            case Form::Nothing:
                return true;
            case Form::Digit:
                return read_digits(statement.argument, 1);
            case Form::Digits:
                return read_digits(statement.argument, 3);
            case Form::Channel:
                statement.names_channel = true;
                return read_digits(statement.channel, 3);
            case Form::Numbers:
                return read_numbers(statement, row.numbers);
            case Form::Table:
                return read_digits(statement.argument, 1) && read_numbers(statement, row.numbers);
            case Form::Mode:
                return read_mode(statement) && read_digits(statement.range, 2);
            case Form::Group:
                return read_digits(statement.argument, 1) && read_members(statement);
        }
        return false;
    }

    bool read_digits(int& value, std::size_t most) {
        const auto read = digits(most);
        value = read.value_or(0);
        return read.has_value();
    }

    bool read_numbers(Statement& statement, std::size_t count) {
        if (rest_.size() < 4 * count) return false;
        for (std::size_t i = 0; i < count; ++i) statement.numbers.at(i) = value_of(take(4));
        return true;
    }

    // Two digits; "3A" is the second user thermocouple, mode 30.
    bool read_mode(Statement& statement) {
        const std::string_view mode = take_characters(2);
        if (mode == "3A") {
            statement.argument = 30;
            return true;
        }
        if (mode.size() != 2 || !is_digit(mode[0]) || !is_digit(mode[1])) return false;
        statement.argument = (mode[0] - '0') * 10 + (mode[1] - '0');
        return true;
    }

    // Two digits and "L" or "H" for each member.
    bool read_members(Statement& statement) {
        while (!rest_.empty() && rest_.front() != ';') {
            const auto channel = digits(2);
            const std::string_view kind = take_characters(1);
            if (!channel || (kind != "L" && kind != "H")) return false;
            statement.members.push_back({*channel, kind == "H"});
        }
        return true;
    }

    std::optional<int> digits(std::size_t most) {
        std::size_t count = 0;
        int value = 0;
        while (count < most && count < rest_.size() && is_digit(rest_[count]))
            value = value * 10 + (rest_[count++] - '0');
        rest_.remove_prefix(count);
        if (count == 0) return std::nullopt;
        return value;
    }

    std::string_view take(std::size_t count) {
        const std::string_view taken = rest_.substr(0, count);
        rest_.remove_prefix(taken.size());
        return taken;
    }

    // The same, but not beyond the end of the statement.
    std::string_view take_characters(std::size_t most) {
        return take(std::min(most, rest_.find(';')));
    }

    // Goes behind the next ";"; false when something stood before it.
    bool end_statement() {
        const std::size_t end = rest_.find(';');
        const bool clean = end == 0 || rest_.empty();
        rest_.remove_prefix(end == std::string_view::npos ? rest_.size() : end + 1);
        return clean;
    }

    std::string_view rest_;
};

}  // namespace

std::vector<Statement> read_command(std::string_view command) {
    std::vector<Statement> statements;
    for (Reader reader(command); reader.find_statement();) statements.push_back(reader.next());
    return statements;
}

std::array<unsigned char, 4> bytes_of(float value) {
    const auto bits = std::bit_cast<std::uint32_t>(value);
    return {static_cast<unsigned char>(bits), static_cast<unsigned char>(bits >> 8u),
            static_cast<unsigned char>(bits >> 16u), static_cast<unsigned char>(bits >> 24u)};
}

float value_of(std::string_view four_bytes) {
    std::uint32_t bits = 0;
    for (std::size_t i = 4; i-- > 0;)
        bits = bits << 8u | static_cast<unsigned char>(four_bytes.at(i));
    return std::bit_cast<float>(bits);
}

}  // namespace kavorix::sim
