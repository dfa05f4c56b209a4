#include "Commands/CommandOutput.h"
#include "Commands/CommandTable.h"
#include "Find/SystemPlaces.h"
#include "Platform/Home.h"
#include "Safety/RealPath.h"
#include "Util/JsonPath.h"
#include "Util/JsonText.h"

#include <nlohmann/json.hpp>

namespace orbel {

namespace {

void run(const Request& /*request*/) {
    const ScanCancellation nobodyCancels;
    const auto home = platform::homeFolder();
    nlohmann::json places = nlohmann::json::array();
    for (const auto& place :
         SystemPlaces::find(RealPath::resolve(home).value_or(home), FileTree(), nobodyCancels)) {
        nlohmann::json object{
            {"bytes", place.bytes}, {"upTo", place.isUpTo}, {"what", place.what}, {"command", place.command}};
        putPath(object, "path", place.path);
        places.push_back(std::move(object));
    }
    finish(prettyJson({{"places", std::move(places)}}) + "\n");
}

} // namespace

constinit const Command systemCommand{
    .name = "--system-json",
    .help =
        "Print as JSON what takes 100 MB or more outside the home folder and is freed by a command, such as "
        "downloaded packages and old kernels: its size, and the command, which is never run from here.",
    .run = run,
};

} // namespace orbel
