#include "soak/witness.h"

#include <bit>
#include <thread>

namespace kavorix::soak {

namespace {

constexpr std::int16_t LinkError = 1;
constexpr std::int16_t NoAnswer = -1;

// Reads of this length throw away what a pod in error still had to say.
constexpr std::size_t DiscardedReply = 10;

// More calls than any single action needs: one that makes them does not end.
constexpr long long MostCalls = 400'000'000;

class WitnessFile : public File {
  public:
    WitnessFile(std::unique_ptr<File> behind, std::string path, Invariants& rules)
        : behind_(std::move(behind)), path_(std::move(path)), rules_(rules) {}

    std::size_t read(std::span<char> buffer) override { return behind_->read(buffer); }
    std::size_t read_at(std::uint64_t offset, std::span<char> buffer) override {
        return behind_->read_at(offset, buffer);
    }
    void write(std::string_view bytes) override { behind_->write(bytes); }
    void write_at(std::uint64_t offset, std::string_view bytes) override {
        behind_->write_at(offset, bytes);
        // Marks of records that have come onto the disk follow from a thread of their own.
        if (std::this_thread::get_id() == thread_) rules_.log_written(path_, offset, bytes);
    }
    std::uint64_t size() override { return behind_->size(); }
    bool deleted() override { return behind_->deleted(); }
    void truncate(std::uint64_t size) override { behind_->truncate(size); }
    void sync() override { behind_->sync(); }
    void close() override { behind_->close(); }

  private:
    std::unique_ptr<File> behind_;
    std::string path_;
    Invariants& rules_;
    std::thread::id thread_ = std::this_thread::get_id();
};

}  // namespace

std::unique_ptr<File> WitnessFiles::open(const std::string& path, OpenMode mode) {
    auto file = behind_.open(path, mode);
    if (mode == OpenMode::ReadWrite) rules_.log_opened(path);
    return std::make_unique<WitnessFile>(std::move(file), path, rules_);
}

void WitnessDriver::restart() {
    preamble_.reset();
    querying_ = direct_ = false;
    awaited_.clear();
}

void WitnessDriver::message_shown(std::string_view text) {
    if (text != " Transmitting Command String") return;
    rules_.transmission_begins();
    preamble_ = 0;
}

// Nobody looks at what becomes of a "CO" to a pod in continuous mode that begins a transmission.
bool WitnessDriver::is_preamble(std::int16_t pod, std::string_view command) {
    const PodConfigs& configured = rules_.world.station->configuration.ZavConfig;
    if (preamble_ && command == "CO" && pod > *preamble_ &&
        configured[Pod::numbered(pod)].ContScan == 1) {
        preamble_ = pod;
        return true;
    }
    preamble_.reset();
    return false;
}

void WitnessDriver::end_query() {
    querying_ = false;
    for (const Pod pod : std::exchange(awaited_, {})) rules_.link_error(pod.index(), true, false);
}

bool WitnessDriver::count_call(std::int16_t pod) {
    ++calls;
    rules_.expect(calls < MostCalls, Rule::CallsComeToAnEnd, "an action goes on for ever");
    const bool real = pod >= 1 && pod <= MaxZavs;
    rules_.expect(real, Rule::RecordsStayInRange, "pod number " + std::to_string(pod));
    return real;
}

std::int16_t WitnessDriver::Zav_Connect(std::int16_t address) {
    return network_.Zav_Connect(address);
}

std::int16_t WitnessDriver::Zav_Init(std::span<std::int16_t, MaxZavs> present,
                                     std::int16_t handle) {
    const auto status = network_.Zav_Init(present, handle);
    if (status == 0) rules_.connected(present);
    return status;
}

std::int16_t WitnessDriver::Zav_Tx(std::int16_t pod, std::string_view command,
                                   std::int16_t handle) {
    if (!count_call(pod)) return LinkError;
    const int index = pod - 1;
    if (querying_)
        rules_.status_asked(index);
    else if (!direct_)
        rules_.command_sent(index, command);
    if (sabotage_ == Sabotage::WrongPod && calls % 50 == 0 && pod < MaxZavs)
        rules_.command_sent(index + 1, command);
    const auto status = network_.Zav_Tx(pod, command, handle);
    for (const char c : command) note(static_cast<unsigned char>(c));
    note(static_cast<std::uint16_t>(status));
    if (querying_) {
        if (status == 0) awaited_.add(Pod::numbered(pod));
        if (status == LinkError) rules_.link_error(index, false, false);
    } else if (!direct_ && !is_preamble(pod, command) && status == LinkError) {
        rules_.link_error(index, false, true);
    }
    return status;
}

std::int16_t WitnessDriver::Zav_Test(std::int16_t pod, std::int16_t stream, std::int16_t handle) {
    if (!count_call(pod)) return NoAnswer;
    const int index = pod - 1;
    if (!direct_) rules_.tested(index);
    if (sabotage_ == Sabotage::RemovedPodPolled && calls % 1000 == 0)
        for (int other = 0; other < MaxZavs; ++other) {
            if (rules_.known.pods[at(other)].polled || !rules_.known.pods[at(other)].in_error)
                continue;
            rules_.tested(other);
        }
    const auto result = network_.Zav_Test(pod, stream, handle);
    note(static_cast<std::uint16_t>(result));
    if (direct_) return result;
    if (result == NoAnswer) {
        rules_.link_error(index, true, true);
        if (sabotage_ == Sabotage::SwallowedError) return 0;
    }
    if (result == 1 && stream == ReadingStream) rules_.known.pods[at(index)].new_scan = true;
    if (result == 1 && stream == EventStream) rules_.known.pods[at(index)].new_events = true;
    return result;
}

std::int16_t WitnessDriver::Zav_Numeric(std::int16_t pod, std::int16_t stream, std::int16_t& count,
                                        std::span<float> values, std::span<std::int16_t> codes,
                                        std::int16_t handle) {
    if (!count_call(pod)) return LinkError;
    const auto status = network_.Zav_Numeric(pod, stream, count, values, codes, handle);
    note(static_cast<std::uint16_t>(status));
    if (direct_) return status;
    if (status == LinkError) rules_.link_error(pod - 1, true, true);
    if (status != 0 || stream != ReadingStream) return status;
    for (const float value : values) note(std::bit_cast<std::uint32_t>(value));
    rules_.scan_read(pod - 1, count, values, codes);
    if (sabotage_ == Sabotage::ChangedReading && calls % 100 == 0) values[0] += 0.5F;
    return status;
}

std::int16_t WitnessDriver::Zav_String(std::int16_t pod, std::int16_t stream,
                                       std::span<char> buffer, std::int16_t handle) {
    if (!count_call(pod)) return LinkError;
    const int index = pod - 1;
    const auto status = network_.Zav_String(pod, stream, buffer, handle);
    note(static_cast<std::uint16_t>(status));
    if (buffer.size() == DiscardedReply) return status;
    if (stream == TextStream && awaited_.has(Pod::numbered(pod))) {
        if (status == 0) awaited_.remove(Pod::numbered(pod));
        return status;
    }
    if (status == LinkError)
        rules_.link_error(index, true, true);
    else if (stream == EventStream)
        rules_.events_read(index, {buffer.data(), buffer.size()});
    return status;
}

}  // namespace kavorix::soak
