// SPDX-License-Identifier: MIT
// What a developer would write with the desktop's usual declarative toolkit, for each scene of the component bench.
import QtQuick

Item {
    id: root
    width: 1920
    height: 1080

    property string scene: ""
    property int count: 0
    property real phase: 0    // of the shimmer, 0 to 1
    property real dragged: 0  // of the sheet, in points
    property real scrolled: 0 // of the rows

    function change(row, value) { loader.item.rows.itemAt(row).value = value }
    function changeAll(value) {
        for (let row = 0; row < root.count; ++row)
            loader.item.rows.itemAt(row).value = value
    }

    Loader {
        id: loader
        anchors.fill: parent
        sourceComponent: root.scene === "rows" ? rowsScene : root.scene === "shimmer" ? shimmerScene
                       : root.scene === "sheet" ? sheetScene : null
    }

    Component {
        id: rowsScene
        Flickable {
            property alias rows: repeater
            contentHeight: column.height
            contentY: root.scrolled
            Column {
                id: column
                width: parent.width
                Repeater {
                    id: repeater
                    model: root.count
                    Item {
                        required property int index
                        property int value: 10
                        width: column.width
                        height: label.height
                        Text { id: label; text: "Row " + index + ": " + value; font.pixelSize: 17 }
                    }
                }
            }
        }
    }

    Component {
        id: shimmerScene
        Grid {
            columns: 5
            spacing: 16
            Repeater {
                model: 50
                // Masks need a graphics card there: a band of light over the shape instead, cut to its rectangle.
                Rectangle {
                    width: 340
                    height: 80
                    radius: 8
                    color: "#c7c7cc"
                    clip: true
                    Rectangle {
                        width: 340
                        height: 80
                        x: -340 + root.phase * 680
                        gradient: Gradient {
                            orientation: Gradient.Horizontal
                            GradientStop { position: 0; color: "#00ffffff" }
                            GradientStop { position: 0.5; color: "#b0ffffff" }
                            GradientStop { position: 1; color: "#00ffffff" }
                        }
                    }
                }
            }
        }
    }

    Component {
        id: sheetScene
        Item {
            Rectangle { anchors.fill: parent; color: "white" }
            Rectangle { anchors.fill: parent; color: "black"; opacity: Math.max(0, 0.4 - root.dragged / 600) }
            Rectangle {
                width: parent.width
                height: 720
                y: parent.height - 700 + root.dragged
                radius: 10
                color: "white"
                Rectangle { y: 12; width: 40; height: 6; radius: 3; color: "gray"; anchors.horizontalCenter: parent.horizontalCenter }
                Column {
                    y: 30
                    spacing: 8
                    anchors.horizontalCenter: parent.horizontalCenter
                    Repeater {
                        model: 20
                        Text { required property int index; text: "Line " + index; font.pixelSize: 17 }
                    }
                }
            }
        }
    }
}
