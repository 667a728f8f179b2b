pragma Singleton

import QtQuick
import Sorvanta.Style

// The colours, type, spaces and durations of the look. Colours with a transparent part are written #AARRGGBB.
QtObject {
    id: theme

    property bool dark: ColorScheme.isDark
    property bool motion: !ColorScheme.hasReducedMotion

    readonly property color windowColor: dark ? "#15191B" : "#F5F7F8"
    readonly property color sidebar: dark ? "#101315" : "#EBEFF1"
    readonly property color card: dark ? "#1D2225" : "#FFFFFF"
    readonly property color popup: dark ? "#252B2F" : "#FFFFFF"
    readonly property color well: dark ? "#181C1F" : "#F3F6F7"
    readonly property color control: dark ? "#2A3034" : "#FFFFFF"
    readonly property color hover: dark ? "#272D31" : "#EFF3F4"
    readonly property color pressed: dark ? "#30373B" : "#E4EAEC"
    readonly property color track: dark ? "#363E43" : "#DCE3E6"
    readonly property color separator: dark ? "#2B3236" : "#E3E8EA"
    readonly property color border: dark ? "#363E43" : "#D6DDE0"
    readonly property color controlBorder: dark ? "#465056" : "#C3CDD1"
    readonly property color controlMark: dark ? "#7F8C93" : "#76838A"
    readonly property color dropDash: dark ? "#465056" : "#A9B6BC"
    readonly property color text: dark ? "#EDF1F2" : "#182125"
    readonly property color text2: dark ? "#AEB9BE" : "#4F5D64"
    readonly property color text3: dark ? "#95A1A7" : "#57646B"
    readonly property color textDisabled: dark ? "#657077" : "#98A4AA"
    readonly property color accent: dark ? "#1A7A92" : "#085E78"
    readonly property color accentHover: dark ? "#1C7F98" : "#0A6B88"
    readonly property color accentPressed: dark ? "#166A80" : "#064C62"
    readonly property color accentOn: "#FFFFFF"
    readonly property color accentText: dark ? "#66C6DB" : "#085E78"
    readonly property color accentSoft: dark ? "#173640" : "#D9EAEF"
    readonly property color sidebarSelected: dark ? "#173640" : "#D2E3E9"
    readonly property color progressFill: dark ? "#4FB4CC" : "#085E78"
    readonly property color focus: dark ? "#4FB4CC" : "#0F7B9B"
    readonly property color danger: dark ? "#FF8B80" : "#B42A22"
    readonly property color dangerFill: dark ? "#C63F35" : "#C2352C"
    readonly property color dangerFillHover: dark ? "#B7382F" : "#AE2D25"
    readonly property color dangerFillPressed: dark ? "#A33027" : "#97251E"
    readonly property color dangerSoft: dark ? "#3A2120" : "#FBEAE8"
    readonly property color dangerBorder: dark ? "#5E3330" : "#E8BDB8"
    readonly property color warning: dark ? "#F2B35B" : "#8F4F00"
    readonly property color success: dark ? "#6BCB8F" : "#17693A"
    readonly property color info: dark ? "#82B1F5" : "#1F5FBF"
    readonly property color hitText: dark ? "#FFFFFF" : "#182125"
    readonly property color hitCurrentText: "#182125"
    readonly property color hitCurrent: dark ? "#FFD60A" : "#FFCC00"
    readonly property color toolTip: dark ? "#EDF1F2" : "#263036"
    readonly property color toolTipText: dark ? "#182125" : "#FFFFFF"
    readonly property color hit: dark ? "#59FFD60A" : "#59FFCC00"
    readonly property color rowActive: dark ? "#2E66C6DB" : "#2E085E78"
    readonly property color tagFill: dark ? "#1FAEB9BE" : "#1F4F5D64"
    readonly property color levelTrack: dark ? "#26AEB9BE" : "#264F5D64"
    readonly property color level: dark ? "#B24CC985" : "#B22F9E5B"
    readonly property color levelIdle: "#4C808080"
    readonly property color scrollThumb: dark ? "#59A9B8BF" : "#594F5D64"
    readonly property color scrim: dark ? "#8C000000" : "#5C182125"
    readonly property color cardDepth: dark ? "#00000000" : "#0A101820"
    readonly property color controlDepth: dark ? "#00000000" : "#0D101820"
    readonly property color accentBadgeEnd: Qt.tint(card, Qt.rgba(accent.r, accent.g, accent.b, 0.8))
    readonly property color indigoBadge: "#4A4DB8"
    readonly property color indigoBadgeEnd: "#1F5FBF"

    readonly property string textFamily: Fonts.text
    readonly property string displayFamily: Fonts.display
    readonly property string monospacedFamily: Fonts.monospaced
    readonly property string serifFamily: Fonts.serif
    readonly property string roundedFamily: Fonts.rounded

    readonly property int controlRadius: 8
    readonly property int itemRadius: 6
    readonly property int checkRadius: 5
    readonly property int tagRadius: 6
    readonly property int cardRadius: 12
    readonly property int menuRadius: 10
    readonly property int dialogRadius: 14

    readonly property int controlHeight: 32
    readonly property int largeControlHeight: 40
    readonly property int pickerWidth: 280
    readonly property int pageWidth: 816
    readonly property int pageGutter: 24

    readonly property int hoverTime: motion ? 90 : 0
    readonly property int colorTime: motion ? 120 : 0
    readonly property int switchTime: motion ? 140 : 0
    readonly property int menuTime: motion ? 100 : 0
    readonly property int dialogTime: motion ? 180 : 0
    readonly property int scrollTime: motion ? 250 : 0
    readonly property int levelTime: motion ? 120 : 0
    readonly property int progressTime: 200
    readonly property int indeterminateTime: 1400
}
