#include "Export/NcduExport.h"

#include "Util/AppVersion.h"

#include <string>
#include <utility>
#include <vector>

namespace orbel {

namespace {

/// What is collected before it is given away.
constexpr std::size_t pieceSize = 256 * 1024;

void appendText(std::string& json, std::string_view text) {
    constexpr std::string_view digits = "0123456789abcdef";
    json += '"';
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte < 0x20 || byte == 0x7F) {
            json += "\\u00";
            json += digits[byte >> 4U];
            json += digits[byte & 0xFU];
            continue;
        }
        if (byte == '"' || byte == '\\')
            json += '\\';
        json += character;
    }
    json += '"';
}

class Export {
public:
    Export(const FileTree& tree, const std::function<void(std::string_view)>& put) : tree_(tree), put_(put) {}

    void run(Date measuredAt) {
        const auto seconds = std::chrono::floor<std::chrono::seconds>(measuredAt).time_since_epoch().count();
        json_ = R"([1,2,{"progname":"orbel","progver":")" + appVersion() + R"(","timestamp":)"
                + std::to_string(seconds) + "},\n";
        begin(0);
        // A folder whose children are being written, and how many of them are.
        std::vector<std::pair<NodeIndex, std::size_t>> open{{0, 0}};
        while (!open.empty()) {
            const auto folder = open.back().first;
            const auto written = open.back().second++;
            const auto children = tree_.children(folder);
            if (written == children.size()) {
                json_ += isList(folder) ? "]" : "";
                open.pop_back();
                continue;
            }
            json_ += ",\n";
            begin(children[written]);
            open.emplace_back(children[written], 0);
            if (json_.size() >= pieceSize) {
                put_(json_);
                json_.clear();
            }
        }
        json_ += "]\n";
        put_(json_);
    }

private:
    void number(std::string_view name, std::uint64_t value) {
        json_ += ",\"";
        json_ += name;
        json_ += "\":";
        json_ += std::to_string(value);
    }

    /// A folder that was looked into.
    bool isList(NodeIndex node) const {
        return tree_.isFolder(node) && !tree_.flags(node).contains(NodeFlags::otherVolume);
    }

    /// What is known of a node; a list is left open for its children.
    void begin(NodeIndex node) {
        const auto flags = tree_.flags(node);
        json_ += isList(node) ? R"([{"name":)" : R"({"name":)";
        appendText(json_, node == 0 ? std::string_view(tree_.rootPath) : tree_.nameBytes(node));
        const auto [device, inode] = tree_.identity(node);
        const auto group = hardLink(node);
        if (!tree_.isFolder(node)) {
            number("asize", tree_.logical(node));
            number("dsize", group ? *group : tree_.allocated(node));
        }
        if (node == 0 || device != tree_.device)
            number("dev", device);
        if (group) {
            number("ino", inode);
            number("nlink", tree_.linkCount(node));
            json_ += R"(,"hlnkc":true)";
        }
        const auto modified = tree_.modified(node).time_since_epoch().count();
        if (modified >= 0)
            number("mtime", static_cast<std::uint64_t>(modified));
        if (flags.contains(NodeFlags::symlink))
            json_ += R"(,"notreg":true)";
        if (flags.contains(NodeFlags::unreadable))
            json_ += R"(,"read_error":true)";
        if (flags.contains(NodeFlags::otherVolume))
            json_ += tree_.isExcluded(node) ? R"(,"excluded":"pattern")" : R"(,"excluded":"otherfs")";
        json_ += '}';
    }

    /// The bytes of the file that a node is one of several links of.
    std::optional<std::uint64_t> hardLink(NodeIndex node) const {
        if (tree_.linkCount(node) < 2 || tree_.isFolder(node))
            return std::nullopt;
        const auto size = tree_.hardLinkSizes.find(tree_.identity(node));
        return size == tree_.hardLinkSizes.end() ? std::nullopt : std::optional(size->second);
    }

    const FileTree& tree_;
    const std::function<void(std::string_view)>& put_;
    std::string json_;
};

} // namespace

void exportAsNcdu(const FileTree& tree, Date measuredAt, const std::function<void(std::string_view)>& put) {
    Export(tree, put).run(measuredAt);
}

} // namespace orbel
