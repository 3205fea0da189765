#include "platform/driver_library.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif

#include <algorithm>
#include <limits>
#include <vector>

#include "platform/zavdrvr.h"

namespace kavorix {

namespace {

// One loaded library.
class SharedLibrary {
  public:
#ifdef _WIN32
    explicit SharedLibrary(const std::string& path) : handle_(LoadLibraryA(path.c_str())) {
        if (handle_ == nullptr) reason_ = "error " + std::to_string(GetLastError());
    }
    ~SharedLibrary() {
        if (handle_ != nullptr) FreeLibrary(handle_);
    }
    void* find(const char* name) const {
        return reinterpret_cast<void*>(GetProcAddress(handle_, name));
    }
#else
    // A name without a directory means the file beside the user, not one of the system's.
    explicit SharedLibrary(const std::string& path)
        : handle_(dlopen((path.find('/') == std::string::npos ? "./" + path : path).c_str(),
                         RTLD_NOW | RTLD_LOCAL)) {
        if (handle_ == nullptr) reason_ = dlerror();
    }
    ~SharedLibrary() {
        if (handle_ != nullptr) dlclose(handle_);
    }
    void* find(const char* name) const {
        return dlsym(handle_, name);
    }
#endif
    SharedLibrary(const SharedLibrary&) = delete;
    SharedLibrary& operator=(const SharedLibrary&) = delete;

    bool loaded() const {
        return handle_ != nullptr;
    }
    const std::string& reason() const {
        return reason_;
    }

  private:
#ifdef _WIN32
    HMODULE handle_;
#else
    void* handle_;
#endif
    std::string reason_;
};

// The functions of a library, all of them there.
struct Functions {
    decltype(&::Zav_Connect) Zav_Connect = nullptr;
    decltype(&::Zav_Init) Zav_Init = nullptr;
    decltype(&::Zav_Disconnect) Zav_Disconnect = nullptr;
    decltype(&::Zav_Tx) Zav_Tx = nullptr;
    decltype(&::Zav_Test) Zav_Test = nullptr;
    decltype(&::Zav_String) Zav_String = nullptr;
    decltype(&::Zav_Numeric) Zav_Numeric = nullptr;
    decltype(&::Zav_ValToByte) Zav_ValToByte = nullptr;
    decltype(&::Zav_DLLVersion) Zav_DLLVersion = nullptr;
    decltype(&::Zav_PowerOff) Zav_PowerOff = nullptr;
    decltype(&::Zav_DLLDelay) Zav_DLLDelay = nullptr;
};

// The names of those that are missing, joined by commas.
std::string find_functions(const SharedLibrary& library, Functions& functions) {
    std::string missing;
    const auto find = [&](auto& function, const char* name) {
        function =
            reinterpret_cast<std::remove_reference_t<decltype(function)>>(library.find(name));
        if (function == nullptr) missing += (missing.empty() ? "" : ", ") + std::string(name);
    };
    find(functions.Zav_Connect, "Zav_Connect");
    find(functions.Zav_Init, "Zav_Init");
    find(functions.Zav_Disconnect, "Zav_Disconnect");
    find(functions.Zav_Tx, "Zav_Tx");
    find(functions.Zav_Test, "Zav_Test");
    find(functions.Zav_String, "Zav_String");
    find(functions.Zav_Numeric, "Zav_Numeric");
    find(functions.Zav_ValToByte, "Zav_ValToByte");
    find(functions.Zav_DLLVersion, "Zav_DLLVersion");
    find(functions.Zav_PowerOff, "Zav_PowerOff");
    find(functions.Zav_DLLDelay, "Zav_DLLDelay");
    return missing;
}

// A caller's buffer as the library sees it: a copy with room behind it.
template <class Item>
class Lent {
  public:
    explicit Lent(std::span<Item> own) : own_(own), copy_(own.begin(), own.end()) {
        copy_.resize(own.size() + Room);
    }
    Item* data() { return copy_.data(); }
    void give_back() { std::copy_n(copy_.begin(), own_.size(), own_.begin()); }

  private:
    static constexpr std::size_t Room = 1024;
    std::span<Item> own_;
    std::vector<Item> copy_;
};

std::int16_t length_of(std::size_t size) {
    constexpr std::size_t Most = std::numeric_limits<std::int16_t>::max();
    return static_cast<std::int16_t>(std::min(size, Most));
}

class LibraryDriver : public Driver {
  public:
    LibraryDriver(std::unique_ptr<SharedLibrary> library, const Functions& functions)
        : library_(std::move(library)), call_(functions) {}

    std::int16_t Zav_Connect(std::int16_t address) override {
        std::int16_t handle = -1;
        call_.Zav_Connect(&address, &handle);
        return handle;
    }

    std::int16_t Zav_Init(std::span<std::int16_t, MaxZavs> present, std::int16_t handle) override {
        Lent<std::int16_t> flags(present);
        std::int16_t status = 1;
        call_.Zav_Init(flags.data(), &status, &handle);
        flags.give_back();
        return status;
    }

    void Zav_Disconnect(std::int16_t handle) override { call_.Zav_Disconnect(&handle); }

    std::int16_t Zav_Tx(std::int16_t pod, std::string_view command, std::int16_t handle) override {
        std::vector<char> text(command.begin(), command.end());
        Lent<char> bytes(text);
        std::int16_t status = 1;
        std::int16_t length = length_of(command.size());
        call_.Zav_Tx(&pod, bytes.data(), &status, &length, &handle);
        return status;
    }

    std::int16_t Zav_Test(std::int16_t pod, std::int16_t stream, std::int16_t handle) override {
        std::int16_t result = 0;
        call_.Zav_Test(&pod, &stream, &result, &handle);
        return result;
    }

    std::int16_t Zav_String(std::int16_t pod, std::int16_t stream, std::span<char> buffer,
                            std::int16_t handle) override {
        Lent<char> text(buffer);
        std::int16_t length = length_of(buffer.size());
        std::int16_t status = 1;
        call_.Zav_String(&pod, &stream, text.data(), &length, &status, &handle);
        text.give_back();
        return status;
    }

    std::int16_t Zav_Numeric(std::int16_t pod, std::int16_t stream, std::int16_t& count,
                             std::span<float> values, std::span<std::int16_t> codes,
                             std::int16_t handle) override {
        Lent<float> numbers(values);
        Lent<std::int16_t> results(codes);
        std::int16_t status = 1;
        call_.Zav_Numeric(&pod, &stream, &count, &status, numbers.data(), results.data(), &handle);
        numbers.give_back();
        results.give_back();
        return status;
    }

    std::array<std::int16_t, 4> Zav_ValToByte(float value) override {
        std::array<std::int16_t, 4> bytes{};
        Lent<std::int16_t> lent(bytes);
        call_.Zav_ValToByte(&value, lent.data());
        lent.give_back();
        return bytes;
    }

    void Zav_DLLVersion(std::span<char, 34> text) override {
        Lent<char> lent(text);
        call_.Zav_DLLVersion(lent.data());
        lent.give_back();
    }

    void Zav_PowerOff(std::int16_t handle) override { call_.Zav_PowerOff(&handle); }

    void Zav_DLLDelay(std::int16_t milliseconds) override { call_.Zav_DLLDelay(milliseconds); }

  private:
    std::unique_ptr<SharedLibrary> library_;
    Functions call_;
};

}  // namespace

LoadedDriver load_driver_library(const std::string& path) {
    auto library = std::make_unique<SharedLibrary>(path);
    if (!library->loaded())
        return {nullptr, "Cannot load driver library " + path + ": " + library->reason()};
    Functions functions;
    if (const std::string missing = find_functions(*library, functions); !missing.empty())
        return {nullptr, "Driver library " + path + " lacks " + missing};
    return {std::make_unique<LibraryDriver>(std::move(library), functions), {}};
}

}  // namespace kavorix
