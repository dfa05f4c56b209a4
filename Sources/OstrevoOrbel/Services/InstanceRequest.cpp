#include "Services/InstanceRequest.h"

#include "Util/FileUrl.h"
#include "Util/JsonText.h"
#include "Util/PathText.h"
#include "Util/StrictJson.h"
#include "Util/Utf8.h"

#include <filesystem>
#include <nlohmann/json.hpp>
#include <system_error>

namespace orbel {

InstanceRequest InstanceRequest::of(const LaunchOptions& options) {
    InstanceRequest request{.scanPath = options.scanPath,
                            .openScanPath = options.openScanPath,
                            .screen = options.openScreen,
                            .app = options.selectApp};
    for (auto* const path : {&request.scanPath, &request.openScanPath}) {
        if (!*path || (*path)->starts_with('/'))
            continue;
        std::error_code error;
        const auto here = std::filesystem::current_path(error);
        *path = joinedPath(here.native(), **path);
    }
    if (const auto token = qgetenv("XDG_ACTIVATION_TOKEN"); !token.isEmpty())
        request.activationToken = token.toStdString();
    return request;
}

QByteArray InstanceRequest::text() const {
    nlohmann::json json = nlohmann::json::object();
    // A URL, because a path may be no text.
    if (scanPath)
        json["scan"] = fileUrl(*scanPath);
    if (openScanPath)
        json["open"] = fileUrl(*openScanPath);
    if (screen)
        json["screen"] = screenNames.at(static_cast<std::size_t>(*screen));
    if (app)
        json["app"] = lossyUtf8(*app);
    if (activationToken)
        json["token"] = lossyUtf8(*activationToken);
    return QByteArray::fromStdString(compactJson(json) + "\n");
}

InstanceRequest InstanceRequest::fromText(const QByteArray& text) {
    InstanceRequest request;
    try {
        const auto json = nlohmann::json::parse(text.begin(), text.end());
        if (json.contains("scan"))
            request.scanPath = pathOfFileUrl(textAt(json, "scan"));
        if (json.contains("open"))
            request.openScanPath = pathOfFileUrl(textAt(json, "open"));
        if (json.contains("screen"))
            request.screen = screenNamed(textAt(json, "screen"));
        if (json.contains("app"))
            request.app = textAt(json, "app");
        if (json.contains("token"))
            request.activationToken = textAt(json, "token");
    } catch (const nlohmann::json::exception&) {
        return {};
    }
    return request;
}

} // namespace orbel
