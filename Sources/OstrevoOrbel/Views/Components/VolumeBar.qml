pragma ComponentBehavior: Bound

import QtQuick
import OstrevoOrbel

/// A volume as a bar whose parts add up to the whole. Each part is at least two wide, so that none is hidden.
Item {
    id: bar

    required property RoleList segments
    /// Fills all of what was measured with one colour in place of those of the kinds.
    property bool plain: false
    readonly property int gap: plain ? 0 : 1
    /// Where the last part ends that is used, which is neither reserved nor free.
    property real usedEnd: 0

    function findUsedEnd(): void {
        let end = 0;
        for (let i = 0; i < parts.count; ++i) {
            const segment = parts.itemAt(i);
            if (segment && segment.part < DiskLedger.Reserved)
                end = Math.max(end, segment.end);
        }
        usedEnd = end;
    }

    clip: true
    implicitHeight: 40

    Item {
        anchors.fill: parent

        Repeater {
            id: parts

            model: bar.segments

            Item {
                id: segment

                required property int index
                required property int part
                required property int kind
                required property string title
                required property string size
                required property real fraction

                /// From the edge at which the bar begins.
                readonly property real start: {
                    const before = index > 0 ? parts.itemAt(index - 1) : null;
                    return before ? before.start + before.width + bar.gap : 0;
                }

                readonly property real end: start + width

                onEndChanged: Qt.callLater(bar.findUsedEnd)

                Accessible.ignored: true
                height: bar.height
                width: index === parts.count - 1 ? Math.max(2, bar.width - start)
                    : Math.max(2, Math.round(fraction * (bar.width - (parts.count - 1) * bar.gap)))
                x: Theme.along(start, width, bar.width)

                Rectangle {
                    anchors.fill: parent
                    border.color: Theme.control
                    border.width: segment.part === DiskLedger.Free ? 1 : 0
                    color: segment.part === DiskLedger.Free ? "transparent"
                        : segment.part === DiskLedger.Reserved ? Theme.control
                        : segment.part === DiskLedger.Trash ? Theme.text3
                        : bar.plain || segment.kind < 0 ? Theme.accent : Theme.kindFills[segment.kind]
                    visible: segment.part !== DiskLedger.NotMeasured
                }
                Hatching {
                    anchors.fill: parent
                    ground: Theme.hatchGround
                    lines: Theme.hatch
                    visible: segment.part === DiskLedger.NotMeasured
                }
                HoverHandler {
                    id: pointer
                }
                Hint {
                    text: segment.title + "  " + segment.size
                    visible: pointer.hovered && bar.height >= 20
                }
            }
        }
    }
}
