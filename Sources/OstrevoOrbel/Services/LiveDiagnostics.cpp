#include "Services/LiveDiagnostics.h"

#include "Platform/Process.h"
#include "Util/JsonText.h"

#include <cmath>
#include <fstream>
#include <nlohmann/json.hpp>

namespace orbel {

namespace {

/// To a hundredth: more digits would only look exact.
double rounded(double milliseconds) {
    return std::round(milliseconds * 100) / 100;
}

} // namespace

LiveDiagnostics::LiveDiagnostics(std::string path, Clock::time_point start)
    : path_(std::move(path)), start_(start) {}

double LiveDiagnostics::sinceStart() const {
    return std::chrono::duration<double, std::milli>(Clock::now() - start_).count();
}

void LiveDiagnostics::mark(std::string_view name) {
    marks_.push_back({std::string(name), sinceStart()});
}

void LiveDiagnostics::noteStall(std::chrono::duration<double, std::milli> stall) {
    if (stall.count() <= longestStall_)
        return;
    longestStall_ = stall.count();
    longestStallEnd_ = sinceStart();
}

nlohmann::json LiveDiagnostics::json() const {
    auto marks = nlohmann::json::array();
    for (const auto& mark : marks_)
        marks.push_back({{"name", mark.name}, {"milliseconds", rounded(mark.milliseconds)}});
    return {
        {"marks", marks},
        {"longestStall", {{"milliseconds", rounded(longestStall_)}, {"endedAt", rounded(longestStallEnd_)}}},
        {"tiles", tiles_},
        {"peakFootprintBytes", platform::peakFootprintBytes()}};
}

bool LiveDiagnostics::write() const {
    std::ofstream file(path_, std::ios::trunc);
    file << prettyJson(json()) << '\n';
    return file.flush().good();
}

} // namespace orbel
