// A pdh.dll that answers from a text file, so that a test can simulate any machine for the real program.
//
// The environment variable KESTRANE_PDH_SCRIPT names the file. It is read again at every collection: a test replaces it
// between two ticks. Fields are separated by bars; texts are UTF-8, statuses hexadecimal:
//
//     open|STATUS                    PdhOpenQueryW fails
//     add|PATH|STATUS                PdhAddEnglishCounterW of this path fails
//     collect|PATH|STATUS            PdhCollectQueryData of the query with this counter fails
//     read|PATH|STATUS               reading this counter fails
//     value|PATH|INSTANCE|NUMBER|STATUS   one instance; INSTANCE may be empty, NUMBER may be nan or inf
//
// A path without any line is unknown, as on a machine that lacks the counter.
#include <windows.h>

#include <pdh.h>
#include <pdhmsg.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "script_file.h"

namespace {

constexpr const wchar_t* ScriptVariable = L"KESTRANE_PDH_SCRIPT";
constexpr DWORD WantedFormat = PDH_FMT_DOUBLE | PDH_FMT_NOCAP100;

struct Query;

struct Counter {
    std::string path;
    Query* query;
};

struct Query {
    Script script;  // as of the last collection
    std::vector<std::unique_ptr<Counter>> counters;
};

struct Instance {
    std::wstring name;
    double value;
    DWORD status;
};

std::string Narrow(const wchar_t* text) {
    std::string narrow;
    for (; *text != 0; ++text)
        narrow += static_cast<char>(*text);
    return narrow;
}

/// The headers define the codes as unsigned, but the calls return signed.
constexpr PDH_STATUS Status(DWORD code) {
    return static_cast<PDH_STATUS>(code);
}

double ParseNumber(const std::string& text) {
    if (text == "nan") return std::numeric_limits<double>::quiet_NaN();
    if (text == "inf") return std::numeric_limits<double>::infinity();
    return std::strtod(text.c_str(), nullptr);
}

/// The status that the script sets for this call on this path; otherwise success.
PDH_STATUS ScriptedStatus(const Script& script, const char* call, const std::string& path) {
    for (const Line& line : script) {
        if (line.size() == 3 && line[0] == call && line[1] == path) return Status(ParseStatus(line[2]));
    }
    return ERROR_SUCCESS;
}

std::vector<Instance> ReadInstances(const Counter& counter) {
    std::vector<Instance> instances;
    for (const Line& line : counter.query->script) {
        if (line.size() == 5 && line[0] == "value" && line[1] == counter.path)
            instances.push_back({Widen(line[2]), ParseNumber(line[3]), ParseStatus(line[4])});
    }
    return instances;
}

PDH_FMT_COUNTERVALUE FormatValue(const Instance& instance) {
    PDH_FMT_COUNTERVALUE formatted{};
    formatted.CStatus = instance.status;
    formatted.doubleValue = instance.value;
    return formatted;
}

std::size_t ArrayBytes(const std::vector<Instance>& instances) {
    std::size_t bytes = instances.size() * sizeof(PDH_FMT_COUNTERVALUE_ITEM_W);
    for (const Instance& instance : instances)
        bytes += (instance.name.size() + 1) * sizeof(wchar_t);
    return bytes;
}

/// Items first, then their names in the same buffer, as the system lays them out.
void FillArray(const std::vector<Instance>& instances, PDH_FMT_COUNTERVALUE_ITEM_W* items) {
    auto* name = reinterpret_cast<wchar_t*>(items + instances.size());
    for (std::size_t i = 0; i < instances.size(); ++i) {
        std::memcpy(name, instances[i].name.c_str(), (instances[i].name.size() + 1) * sizeof(wchar_t));
        items[i].szName = name;
        items[i].FmtValue = FormatValue(instances[i]);
        name += instances[i].name.size() + 1;
    }
}

bool IsKnown(const Script& script, const std::string& path) {
    return std::any_of(script.begin(), script.end(),
                       [&](const Line& line) { return line.size() > 2 && line[1] == path; });
}

}  // namespace

extern "C" {

PDH_FUNCTION PdhOpenQueryW(LPCWSTR source, DWORD_PTR, PDH_HQUERY* query) {
    if (source != nullptr) return Status(PDH_INVALID_ARGUMENT);
    const Script script = ReadScript(ScriptVariable);
    for (const Line& line : script) {
        if (line.size() == 2 && line[0] == "open") return Status(ParseStatus(line[1]));
    }
    *query = new Query{script, {}};
    return ERROR_SUCCESS;
}

PDH_FUNCTION PdhAddEnglishCounterW(PDH_HQUERY handle, LPCWSTR fullPath, DWORD_PTR, PDH_HCOUNTER* counter) {
    auto* query = static_cast<Query*>(handle);
    const std::string path = Narrow(fullPath);
    if (!IsKnown(query->script, path)) return Status(PDH_CSTATUS_NO_COUNTER);
    const PDH_STATUS status = ScriptedStatus(query->script, "add", path);
    if (status != ERROR_SUCCESS) return status;
    query->counters.push_back(std::make_unique<Counter>(Counter{path, query}));
    *counter = query->counters.back().get();
    return ERROR_SUCCESS;
}

PDH_FUNCTION PdhCollectQueryData(PDH_HQUERY handle) {
    auto* query = static_cast<Query*>(handle);
    query->script = ReadScript(ScriptVariable);
    for (const auto& counter : query->counters) {
        const PDH_STATUS status = ScriptedStatus(query->script, "collect", counter->path);
        if (status != ERROR_SUCCESS) return status;
    }
    return query->counters.empty() ? Status(PDH_NO_DATA) : ERROR_SUCCESS;
}

PDH_FUNCTION PdhGetFormattedCounterValue(PDH_HCOUNTER handle, DWORD format, LPDWORD, PPDH_FMT_COUNTERVALUE value) {
    const auto& counter = *static_cast<Counter*>(handle);
    if (format != WantedFormat) return Status(PDH_INVALID_ARGUMENT);
    const PDH_STATUS status = ScriptedStatus(counter.query->script, "read", counter.path);
    if (status != ERROR_SUCCESS) return status;
    const std::vector<Instance> instances = ReadInstances(counter);
    if (instances.empty()) return Status(PDH_INVALID_DATA);
    *value = FormatValue(instances.front());
    return ERROR_SUCCESS;
}

PDH_FUNCTION PdhGetFormattedCounterArrayW(PDH_HCOUNTER handle, DWORD format, LPDWORD size, LPDWORD count,
                                          PPDH_FMT_COUNTERVALUE_ITEM_W items) {
    const auto& counter = *static_cast<Counter*>(handle);
    if (format != WantedFormat) return Status(PDH_INVALID_ARGUMENT);
    const PDH_STATUS status = ScriptedStatus(counter.query->script, "read", counter.path);
    if (status != ERROR_SUCCESS) return status;
    const std::vector<Instance> instances = ReadInstances(counter);
    const std::size_t needed = ArrayBytes(instances);
    const bool fits = items != nullptr && *size >= needed;
    *size = static_cast<DWORD>(needed);
    *count = static_cast<DWORD>(instances.size());
    if (!fits) return Status(PDH_MORE_DATA);
    FillArray(instances, items);
    return ERROR_SUCCESS;
}

PDH_FUNCTION PdhCloseQuery(PDH_HQUERY handle) {
    delete static_cast<Query*>(handle);
    return ERROR_SUCCESS;
}

}  // extern "C"
