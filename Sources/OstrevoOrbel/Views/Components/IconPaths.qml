import QtQuick

/// The icons as path strings, in the path language of SVG: drawn in a view of 16 x 16, stroke 1.4, round, no fill.
QtObject {
    /// Whether back and forward are as for reading from the right to the left.
    property bool mirrored: false

    readonly property string overview: "M2 5.5h12v5H2zM6.5 5.5v5M10.5 5.5v5"
    readonly property string map: "M2 2.5h12v11H2zM8.5 2.5v11M8.5 8.5H14"
    readonly property string large: "M14 8a6 6 0 1 1-12 0a6 6 0 0 1 12 0zM8 4.5V8l2.5 1.5"
    readonly property string copy: "M5.5 5.5h8v8h-8zM10.5 5.5v-3h-8v8h3"
    readonly property string duplicates: copy
    readonly property string uninstall: "M2.5 2.5h5v5h-5zM10 2.5h3.5V6H10zM2.5 10H6v3.5H2.5zM10 10l3.5 3.5M13.5 10L10 13.5"
    readonly property string tidy: "M2 12.5v-9h4.2L7.7 5H14v7.5zM6 8.8h4"
    readonly property string journal: "M3.5 2h9v12h-9zM6 5.5h4M6 8h4M6 10.5h2.5"
    readonly property string settings: "M2 4.5h7M12 4.5h2M2 11.5h2M7 11.5h7M12 4.5a1.5 1.5 0 1 1-3 0a1.5 1.5 0 0 1 3 0zM7 11.5a1.5 1.5 0 1 1-3 0a1.5 1.5 0 0 1 3 0z"
    readonly property string help: "M14 8a6 6 0 1 1-12 0a6 6 0 0 1 12 0zM6.3 6.3a1.8 1.8 0 1 1 2.4 1.8c-.5.2-.7.5-.7 1M8 11.2v.1"
    readonly property string folders: "M2 12.5v-9h4.2L7.7 5H14v7.5z"
    readonly property string diskImages: "M14 8a6 6 0 1 1-12 0a6 6 0 0 1 12 0zM9.5 8a1.5 1.5 0 1 1-3 0a1.5 1.5 0 0 1 3 0z"
    readonly property string check: "M3 8.5l3.2 3L13 4.5"
    readonly property string up: "M8 13V3.5M4 7.2L8 3.2l4 4"
    readonly property string left: "M10 3L5 8l5 5"
    readonly property string right: "M6 3l5 5l-5 5"
    readonly property string back: mirrored ? right : left
    readonly property string forward: mirrored ? left : right
    readonly property string down: "M4 6.5l4 4l4-4"
    readonly property string search: "M11 7a4 4 0 1 1-8 0a4 4 0 0 1 8 0zM10 10l3.5 3.5"
    readonly property string rescan: "M13.5 8a5.5 5.5 0 1 1-1.6-3.9M13.5 2v3h-3"
    readonly property string stop: "M4 4h8v8H4z"
    readonly property string lock: "M4 7h8v6.5H4zM5.5 7V5a2.5 2.5 0 0 1 5 0v2"
    readonly property string warn: "M8 2.5l6 11H2zM8 6.5v3.5M8 11.8v.1"
    readonly property string putBack: "M6 3L2.5 6.5L6 10M2.5 6.5H10a3.5 3.5 0 0 1 0 7H7"
    readonly property string open: "M6.5 3H3v10h10V9.5M9 3h4v4M13 3L7.5 8.5"
    readonly property string zoom: "M11 7a4 4 0 1 1-8 0a4 4 0 0 1 8 0zM10 10l3.5 3.5M5.2 7h3.6M7 5.2v3.6"
    readonly property string close: "M4 4l8 8M12 4l-8 8"
    readonly property string trash: "M3 4.5h10M6 4.5V2.8h4v1.7M4.2 4.5l.6 9h6.4l.6-9"
    readonly property string exporting: "M8 10V2.5M5 5.2l3-3l3 3M3 9.5v4h10v-4"
    readonly property string link: "M6.5 9.5l3-3M7 5l1.8-1.8a2.5 2.5 0 0 1 3.6 3.6L10.6 8.6M9 11l-1.8 1.8a2.5 2.5 0 0 1-3.6-3.6L5.4 7.4"
    readonly property string bell: "M4 11V7.5a4 4 0 0 1 8 0V11l1 1.5H3zM7 14.2h2"
    readonly property string info: "M14 8a6 6 0 1 1-12 0a6 6 0 0 1 12 0zM8 7.3V11M8 5v.1"
    readonly property string list: "M5.5 4h8M5.5 8h8M5.5 12h8M2.5 4h.1M2.5 8h.1M2.5 12h.1"
    readonly property string terminal: "M2 3h12v10H2zM4.5 6l2.2 2l-2.2 2M8.5 10.2h3"
    readonly property string columns: "M2 3h12v10H2zM6.5 3v10M10.5 3v10"
    readonly property string exclude: "M14 8a6 6 0 1 1-12 0a6 6 0 0 1 12 0zM3.8 12.2L12.2 3.8"
    readonly property string plus: "M8 3v10M3 8h10"
}
