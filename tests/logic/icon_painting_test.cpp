#include "tray/icon_painting.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/pixel_picture.h"

namespace kestrane {
namespace {

// One letter per colour: '.' the background, 'o' the border, ' ' a transparent pixel, and by icon
//   CPU      '#' the bars
//   disk     'r' read, 'w' write
//   network  'd' download, 'u' upload, 'b' both
//   memory   't' the bar's track, '#' its filling
const PixelLegend Legend = {{0xFF101010, '.'}, {0xFFEEEEEE, 'o'}, {0, ' '},          {0xFF2060A0, '#'},
                            {0xFFCC0000, 'r'}, {0xFF00CC00, 'w'}, {0xFFDD0000, 'd'}, {0xFF0000DD, 'u'},
                            {0xFFDD00DD, 'b'}, {0xFF183858, 't'}};
constexpr ColorValue Background = 0x101010;
constexpr ColorValue Border = 0xEEEEEE;
constexpr ColorValue Foreground = 0x2060A0;  // 0x183858 is halfway to the background

AppSettings TestSettings() {
    AppSettings settings = MakeDefaultSettings();
    settings.colors[CpuBg] = settings.colors[DiskBg] = settings.colors[NetBg] = settings.colors[MemBg] = Background;
    settings.colors[CpuFg] = settings.colors[MemText] = Foreground;
    settings.colors[DiskRead] = 0xCC0000;
    settings.colors[DiskWrite] = 0x00CC00;
    settings.colors[NetDown] = 0xDD0000;
    settings.colors[NetUp] = 0x0000DD;
    settings.colors[NetBoth] = 0xDD00DD;
    return settings;
}

AppSettings WithBorder() {
    AppSettings settings = TestSettings();
    for (const ColorKey key : {CpuBorder, DiskBorder, NetBorder, MemBorder})
        settings.colors[key] = Border;
    return settings;
}

std::string Picture(const Canvas& canvas) {
    return PixelPicture(canvas.pixels, static_cast<std::size_t>(canvas.size), Legend);
}

/// A history of the `points` values first, first + step, first + 2 * step ...
template <typename T>
MetricRing<T> Ramp(std::uint64_t points, T first, T step) {
    MetricRing<T> ring(64);
    for (std::uint64_t i = 0; i < points; ++i)
        PushSample(ring, static_cast<T>(first + static_cast<T>(i) * step));
    return ring;
}

MetricRing<std::uint64_t> Rates(const std::vector<std::uint64_t>& rates) {
    MetricRing<std::uint64_t> ring(64);
    for (const std::uint64_t rate : rates)
        PushSample(ring, rate);
    return ring;
}

/// The CPU rises from 0 by `step` per point; the icon is wider than the history.
std::string CpuPicture(const AppSettings& settings, std::uint32_t size, std::int32_t step) {
    return Picture(PaintCpuIcon(settings, Ramp<std::int32_t>(size - 2, 0, step), size));
}

/// Reading rises from 0 by `step` per point, writing falls from 90 and has three more points.
std::string DiskPicture(const AppSettings& settings, std::uint32_t size, std::int32_t step) {
    return Picture(PaintDiskIcon(settings, Ramp<std::int32_t>(size - 3, 0, step), Ramp<std::int32_t>(size, 90, -step),
                                 true, size));
}

/// Download rises from 0 by 1000 bit/s per point, upload falls from 20000 by 400 and has four points fewer.
std::string NetworkPicture(const AppSettings& settings, std::uint32_t size) {
    return Picture(PaintNetworkIcon(settings, Ramp<std::uint64_t>(size, 0, 1000),
                                    Ramp<std::uint64_t>(size - 4, 20000, std::uint64_t{0} - 400), size));
}

std::string MemoryPicture(const AppSettings& settings, std::uint32_t size, std::int32_t percent) {
    return Picture(PaintMemoryIcon(settings, percent, size).canvas);
}

TEST(PaintCpuIcon, AtEverySize) {
    EXPECT_EQ(CpuPicture(TestSettings(), 16, 7), R"(
................
...............#
..............##
.............###
............####
............####
...........#####
..........######
.........#######
........########
.......#########
......##########
.....###########
....############
...#############
...#############
)");
    EXPECT_EQ(CpuPicture(TestSettings(), 20, 6), R"(
...................#
..................##
.................###
................####
...............#####
..............######
.............#######
.............#######
............########
...........#########
..........##########
.........###########
........############
.......#############
......##############
......##############
.....###############
....################
...#################
...#################
)");
    EXPECT_EQ(CpuPicture(TestSettings(), 24, 5), R"(
......................##
.....................###
....................####
...................#####
...................#####
..................######
.................#######
................########
...............#########
..............##########
.............###########
............############
............############
...........#############
..........##############
.........###############
........################
.......#################
......##################
......##################
.....###################
....####################
...#####################
...#####################
)");
    EXPECT_EQ(CpuPicture(TestSettings(), 32, 3), R"(
................................
................................
................................
................................
...............................#
..............................##
.............................###
............................####
...........................#####
..........................######
.........................#######
.......................#########
......................##########
.....................###########
....................############
...................#############
..................##############
.................###############
................################
...............#################
..............##################
.............###################
............####################
...........#####################
.........#######################
........########################
.......#########################
......##########################
.....###########################
....############################
...#############################
...#############################
)");
    EXPECT_EQ(CpuPicture(TestSettings(), 48, 2), R"(
................................................
................................................
................................................
................................................
................................................
...............................................#
..............................................##
.............................................###
...........................................#####
..........................................######
.........................................#######
........................................########
.......................................#########
......................................##########
.....................................###########
....................................############
...................................#############
..................................##############
.................................###############
................................################
...............................#################
..............................##################
.............................###################
...........................#####################
..........................######################
.........................#######################
........................########################
.......................#########################
......................##########################
.....................###########################
....................############################
...................#############################
..................##############################
.................###############################
................################################
...............#################################
..............##################################
.............###################################
............####################################
..........######################################
.........#######################################
........########################################
.......#########################################
......##########################################
.....###########################################
....############################################
...#############################################
...#############################################
)");
}

TEST(PaintDiskIcon, AtEverySize) {
    EXPECT_EQ(DiskPicture(TestSettings(), 16, 7), R"(
................
w...............
w..............r
ww............rr
www..........rrr
wwww.........rrr
wwwww.......rrrr
wwwwww.....rrrrr
wwwwwww...rrrrrr
wwwwwwww.rrrrrrr
wwwwwwwwwrrrrrrr
wwwwwwwrwwrrrrrr
wwwwwwrrwwwrrrrr
wwwwwrrrwwwwrrrr
wwwwrrrrwwwwwrrr
wwwwrrrrwwwwwrrr
)");
    EXPECT_EQ(DiskPicture(TestSettings(), 20, 6), R"(
....................
...................r
w.................rr
ww...............rrr
www.............rrrr
wwww...........rrrrr
wwwww.........rrrrrr
wwwww.........rrrrrr
wwwwww.......rrrrrrr
wwwwwww.....rrrrrrrr
wwwwwwww...rrrrrrrrr
wwwwwwwww.rrrrrrrrrr
wwwwwwwwwwrrrrrrrrrr
wwwwwwwwrwwrrrrrrrrr
wwwwwwwrrwwwrrrrrrrr
wwwwwwwrrwwwrrrrrrrr
wwwwwwrrrwwwwrrrrrrr
wwwwwrrrrwwwwwrrrrrr
wwwwrrrrrwwwwwwrrrrr
wwwwrrrrrwwwwwwrrrrr
)");
    EXPECT_EQ(DiskPicture(TestSettings(), 24, 5), R"(
.......................r
......................rr
w....................rrr
ww..................rrrr
ww..................rrrr
www................rrrrr
wwww..............rrrrrr
wwwww............rrrrrrr
wwwwww..........rrrrrrrr
wwwwwww........rrrrrrrrr
wwwwwwww......rrrrrrrrrr
wwwwwwwww....rrrrrrrrrrr
wwwwwwwww....rrrrrrrrrrr
wwwwwwwwww..rrrrrrrrrrrr
wwwwwwwwwwwrrrrrrrrrrrrr
wwwwwwwwwwrwrrrrrrrrrrrr
wwwwwwwwwrrwwrrrrrrrrrrr
wwwwwwwwrrrwwwrrrrrrrrrr
wwwwwwwrrrrwwwwrrrrrrrrr
wwwwwwwrrrrwwwwrrrrrrrrr
wwwwwwrrrrrwwwwwrrrrrrrr
wwwwwrrrrrrwwwwwwrrrrrrr
wwwwrrrrrrrwwwwwwwrrrrrr
wwwwrrrrrrrwwwwwwwrrrrrr
)");
    EXPECT_EQ(DiskPicture(TestSettings(), 32, 3), R"(
................................
................................
................................
w...............................
ww..............................
www............................r
wwww..........................rr
wwwww........................rrr
wwwwww......................rrrr
wwwwwww....................rrrrr
wwwwwwww..................rrrrrr
wwwwwwwwww..............rrrrrrrr
wwwwwwwwwww............rrrrrrrrr
wwwwwwwwwwww..........rrrrrrrrrr
wwwwwwwwwwwww........rrrrrrrrrrr
wwwwwwwwwwwwww......rrrrrrrrrrrr
wwwwwwwwwwwwwww....rrrrrrrrrrrrr
wwwwwwwwwwwwwwww..rrrrrrrrrrrrrr
wwwwwwwwwwwwwwwwwrrrrrrrrrrrrrrr
wwwwwwwwwwwwwwwwrwrrrrrrrrrrrrrr
wwwwwwwwwwwwwwwrrwwrrrrrrrrrrrrr
wwwwwwwwwwwwwwrrrwwwrrrrrrrrrrrr
wwwwwwwwwwwwwrrrrwwwwrrrrrrrrrrr
wwwwwwwwwwwwrrrrrwwwwwrrrrrrrrrr
wwwwwwwwwwrrrrrrrwwwwwwwrrrrrrrr
wwwwwwwwwrrrrrrrrwwwwwwwwrrrrrrr
wwwwwwwwrrrrrrrrrwwwwwwwwwrrrrrr
wwwwwwwrrrrrrrrrrwwwwwwwwwwrrrrr
wwwwwwrrrrrrrrrrrwwwwwwwwwwwrrrr
wwwwwrrrrrrrrrrrrwwwwwwwwwwwwrrr
wwwwrrrrrrrrrrrrrwwwwwwwwwwwwwrr
wwwwrrrrrrrrrrrrrwwwwwwwwwwwwwrr
)");
    EXPECT_EQ(DiskPicture(TestSettings(), 48, 2), R"(
................................................
................................................
................................................
................................................
................................................
w...............................................
ww.............................................r
www...........................................rr
wwwww.......................................rrrr
wwwwww.....................................rrrrr
wwwwwww...................................rrrrrr
wwwwwwww.................................rrrrrrr
wwwwwwwww...............................rrrrrrrr
wwwwwwwwww.............................rrrrrrrrr
wwwwwwwwwww...........................rrrrrrrrrr
wwwwwwwwwwww.........................rrrrrrrrrrr
wwwwwwwwwwwww.......................rrrrrrrrrrrr
wwwwwwwwwwwwww.....................rrrrrrrrrrrrr
wwwwwwwwwwwwwww...................rrrrrrrrrrrrrr
wwwwwwwwwwwwwwww.................rrrrrrrrrrrrrrr
wwwwwwwwwwwwwwwww...............rrrrrrrrrrrrrrrr
wwwwwwwwwwwwwwwwww.............rrrrrrrrrrrrrrrrr
wwwwwwwwwwwwwwwwwww...........rrrrrrrrrrrrrrrrrr
wwwwwwwwwwwwwwwwwwwww.......rrrrrrrrrrrrrrrrrrrr
wwwwwwwwwwwwwwwwwwwwww.....rrrrrrrrrrrrrrrrrrrrr
wwwwwwwwwwwwwwwwwwwwwww...rrrrrrrrrrrrrrrrrrrrrr
wwwwwwwwwwwwwwwwwwwwwwww.rrrrrrrrrrrrrrrrrrrrrrr
wwwwwwwwwwwwwwwwwwwwwwwwwrrrrrrrrrrrrrrrrrrrrrrr
wwwwwwwwwwwwwwwwwwwwwwwrwwrrrrrrrrrrrrrrrrrrrrrr
wwwwwwwwwwwwwwwwwwwwwwrrwwwrrrrrrrrrrrrrrrrrrrrr
wwwwwwwwwwwwwwwwwwwwwrrrwwwwrrrrrrrrrrrrrrrrrrrr
wwwwwwwwwwwwwwwwwwwwrrrrwwwwwrrrrrrrrrrrrrrrrrrr
wwwwwwwwwwwwwwwwwwwrrrrrwwwwwwrrrrrrrrrrrrrrrrrr
wwwwwwwwwwwwwwwwwwrrrrrrwwwwwwwrrrrrrrrrrrrrrrrr
wwwwwwwwwwwwwwwwwrrrrrrrwwwwwwwwrrrrrrrrrrrrrrrr
wwwwwwwwwwwwwwwwrrrrrrrrwwwwwwwwwrrrrrrrrrrrrrrr
wwwwwwwwwwwwwwwrrrrrrrrrwwwwwwwwwwrrrrrrrrrrrrrr
wwwwwwwwwwwwwwrrrrrrrrrrwwwwwwwwwwwrrrrrrrrrrrrr
wwwwwwwwwwwwwrrrrrrrrrrrwwwwwwwwwwwwrrrrrrrrrrrr
wwwwwwwwwwwrrrrrrrrrrrrrwwwwwwwwwwwwwwrrrrrrrrrr
wwwwwwwwwwrrrrrrrrrrrrrrwwwwwwwwwwwwwwwrrrrrrrrr
wwwwwwwwwrrrrrrrrrrrrrrrwwwwwwwwwwwwwwwwrrrrrrrr
wwwwwwwwrrrrrrrrrrrrrrrrwwwwwwwwwwwwwwwwwrrrrrrr
wwwwwwwrrrrrrrrrrrrrrrrrwwwwwwwwwwwwwwwwwwrrrrrr
wwwwwwrrrrrrrrrrrrrrrrrrwwwwwwwwwwwwwwwwwwwrrrrr
wwwwwrrrrrrrrrrrrrrrrrrrwwwwwwwwwwwwwwwwwwwwrrrr
wwwwrrrrrrrrrrrrrrrrrrrrwwwwwwwwwwwwwwwwwwwwwrrr
wwwwrrrrrrrrrrrrrrrrrrrrwwwwwwwwwwwwwwwwwwwwwrrr
)");
}

TEST(PaintNetworkIcon, AtEverySize) {
    EXPECT_EQ(NetworkPicture(TestSettings(), 16), R"(
....uuu.........
....uuuuuu......
....uuuuuuuuu...
....uuuuuuuuuuuu
....uuuuuuuuuuub
....uuuuuuuuubbb
....uuuuuuuubbbb
....uuuuuuubbbbb
....uuuuuubbbbbb
....uuuubbbbbbbb
....uuubbbbbbbbb
....uubbbbbbbbbb
....ubbbbbbbbbbb
....bbbbbbbbbbbb
..ddbbbbbbbbbbbb
.dddbbbbbbbbbbbb
)");
    EXPECT_EQ(NetworkPicture(TestSettings(), 20), R"(
....uuu.............
....uuuuu..........d
....uuuuuuuu......dd
....uuuuuuuuuu...ddd
....uuuuuuuuuuuubddd
....uuuuuuuuuuubbbbd
....uuuuuuuuuubbbbbb
....uuuuuuuuubbbbbbb
....uuuuuuuubbbbbbbb
....uuuuuuubbbbbbbbb
....uuuuuubbbbbbbbbb
....uuuuubbbbbbbbbbb
....uuuubbbbbbbbbbbb
....uuubbbbbbbbbbbbb
....uubbbbbbbbbbbbbb
....ubbbbbbbbbbbbbbb
....bbbbbbbbbbbbbbbb
...dbbbbbbbbbbbbbbbb
..ddbbbbbbbbbbbbbbbb
.dddbbbbbbbbbbbbbbbb
)");
    EXPECT_EQ(NetworkPicture(TestSettings(), 24), R"(
......................dd
.....................ddd
....u...............dddd
....uuuu...........ddddd
....uuuuuu........dddddd
....uuuuuuuu.....ddddddd
....uuuuuuuuuu...ddddddd
....uuuuuuuuuuuubddddddd
....uuuuuuuuuuubbbbddddd
....uuuuuuuuuubbbbbbbddd
....uuuuuuuuubbbbbbbbbbb
....uuuuuuuubbbbbbbbbbbb
....uuuuuuubbbbbbbbbbbbb
....uuuuuubbbbbbbbbbbbbb
....uuuuubbbbbbbbbbbbbbb
....uuuubbbbbbbbbbbbbbbb
....uuubbbbbbbbbbbbbbbbb
....uubbbbbbbbbbbbbbbbbb
....uubbbbbbbbbbbbbbbbbb
....ubbbbbbbbbbbbbbbbbbb
....bbbbbbbbbbbbbbbbbbbb
...dbbbbbbbbbbbbbbbbbbbb
..ddbbbbbbbbbbbbbbbbbbbb
.dddbbbbbbbbbbbbbbbbbbbb
)");
    EXPECT_EQ(NetworkPicture(TestSettings(), 32), R"(
..............................dd
.............................ddd
............................dddd
...........................ddddd
..........................dddddd
.........................ddddddd
........................dddddddd
.......................ddddddddd
.......................ddddddddd
......................dddddddddd
.....................ddddddddddd
....uu..............dddddddddddd
....uuuuu..........ddddddddddddd
....uuuuuuu.......dddddddddddddd
....uuuuuuuuu....ddddddddddddddd
....uuuuuuuuuuuudddddddddddddddd
....uuuuuuuuuuubbbdddddddddddddd
....uuuuuuuuuubbbbbbbddddddddddd
....uuuuuuuuubbbbbbbbbbddddddddd
....uuuuuuuubbbbbbbbbbbbbddddddd
....uuuuuuubbbbbbbbbbbbbbbbbdddd
....uuuuuubbbbbbbbbbbbbbbbbbbbdd
....uuuuubbbbbbbbbbbbbbbbbbbbbbb
....uuuubbbbbbbbbbbbbbbbbbbbbbbb
....uuuubbbbbbbbbbbbbbbbbbbbbbbb
....uuubbbbbbbbbbbbbbbbbbbbbbbbb
....uubbbbbbbbbbbbbbbbbbbbbbbbbb
....ubbbbbbbbbbbbbbbbbbbbbbbbbbb
....bbbbbbbbbbbbbbbbbbbbbbbbbbbb
...dbbbbbbbbbbbbbbbbbbbbbbbbbbbb
..ddbbbbbbbbbbbbbbbbbbbbbbbbbbbb
.dddbbbbbbbbbbbbbbbbbbbbbbbbbbbb
)");
    EXPECT_EQ(NetworkPicture(TestSettings(), 48), R"(
..............................................dd
.............................................ddd
............................................dddd
...........................................ddddd
..........................................dddddd
.........................................ddddddd
........................................dddddddd
.......................................ddddddddd
......................................dddddddddd
.....................................ddddddddddd
....................................dddddddddddd
...................................ddddddddddddd
...................................ddddddddddddd
..................................dddddddddddddd
.................................ddddddddddddddd
................................dddddddddddddddd
...............................ddddddddddddddddd
..............................dddddddddddddddddd
.............................ddddddddddddddddddd
............................dddddddddddddddddddd
...........................ddddddddddddddddddddd
..........................dddddddddddddddddddddd
.........................ddddddddddddddddddddddd
........................dddddddddddddddddddddddd
.......................ddddddddddddddddddddddddd
......................dddddddddddddddddddddddddd
.....................ddddddddddddddddddddddddddd
....u...............dddddddddddddddddddddddddddd
....uuuu...........ddddddddddddddddddddddddddddd
....uuuuuu........dddddddddddddddddddddddddddddd
....uuuuuuuuu....ddddddddddddddddddddddddddddddd
....uuuuuuuuuuu.dddddddddddddddddddddddddddddddd
....uuuuuuuuuuubbddddddddddddddddddddddddddddddd
....uuuuuuuuuubbbbbbdddddddddddddddddddddddddddd
....uuuuuuuuubbbbbbbbbdddddddddddddddddddddddddd
....uuuuuuuubbbbbbbbbbbbbddddddddddddddddddddddd
....uuuuuuuubbbbbbbbbbbbbbbddddddddddddddddddddd
....uuuuuuubbbbbbbbbbbbbbbbbbddddddddddddddddddd
....uuuuuubbbbbbbbbbbbbbbbbbbbbbdddddddddddddddd
....uuuuubbbbbbbbbbbbbbbbbbbbbbbbbdddddddddddddd
....uuuubbbbbbbbbbbbbbbbbbbbbbbbbbbbbddddddddddd
....uuubbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbddddddddd
....uubbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbddddddd
....ubbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbdddd
....bbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbdd
...dbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbb
..ddbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbb
.dddbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbb
)");
}

TEST(PaintMemoryIcon, AtEverySizeWithItsBar) {
    EXPECT_EQ(MemoryPicture(TestSettings(), 16, 42), R"(
tttttttttttttttt
t######........t
t######........t
tttttttttttttttt
................
................
................
................
................
................
................
................
................
................
................
................
)");
    EXPECT_EQ(MemoryPicture(TestSettings(), 20, 0), R"(
tttttttttttttttttttt
t..................t
t..................t
t..................t
tttttttttttttttttttt
....................
....................
....................
....................
....................
....................
....................
....................
....................
....................
....................
....................
....................
....................
....................
)");
    EXPECT_EQ(MemoryPicture(TestSettings(), 24, 30), R"(
tttttttttttttttttttttttt
t#######...............t
t#######...............t
t#######...............t
t#######...............t
tttttttttttttttttttttttt
........................
........................
........................
........................
........................
........................
........................
........................
........................
........................
........................
........................
........................
........................
........................
........................
........................
........................
)");
    EXPECT_EQ(MemoryPicture(TestSettings(), 32, 49), R"(
tttttttttttttttttttttttttttttttt
t###############...............t
t###############...............t
t###############...............t
t###############...............t
t###############...............t
t###############...............t
tttttttttttttttttttttttttttttttt
................................
................................
................................
................................
................................
................................
................................
................................
................................
................................
................................
................................
................................
................................
................................
................................
................................
................................
................................
................................
................................
................................
................................
................................
)");
    EXPECT_EQ(MemoryPicture(TestSettings(), 48, 10), R"(
tttttttttttttttttttttttttttttttttttttttttttttttt
t#####.........................................t
t#####.........................................t
t#####.........................................t
t#####.........................................t
t#####.........................................t
t#####.........................................t
t#####.........................................t
t#####.........................................t
t#####.........................................t
t#####.........................................t
tttttttttttttttttttttttttttttttttttttttttttttttt
................................................
................................................
................................................
................................................
................................................
................................................
................................................
................................................
................................................
................................................
................................................
................................................
................................................
................................................
................................................
................................................
................................................
................................................
................................................
................................................
................................................
................................................
................................................
................................................
................................................
................................................
................................................
................................................
................................................
................................................
................................................
................................................
................................................
................................................
................................................
................................................
)");
}

TEST(PaintIcons, ABorderLiesOverTheBars) {
    EXPECT_EQ(CpuPicture(WithBorder(), 16, 7), R"(
oooooooooooooooo
o..............o
o.............#o
o............##o
o...........###o
o...........###o
o..........####o
o.........#####o
o........######o
o.......#######o
o......########o
o.....#########o
o....##########o
o...###########o
o..############o
oooooooooooooooo
)");
    EXPECT_EQ(DiskPicture(WithBorder(), 16, 7), R"(
oooooooooooooooo
o..............o
o..............o
ow............ro
oww..........rro
owww.........rro
owwww.......rrro
owwwww.....rrrro
owwwwww...rrrrro
owwwwwww.rrrrrro
owwwwwwwwrrrrrro
owwwwwwrwwrrrrro
owwwwwrrwwwrrrro
owwwwrrrwwwwrrro
owwwrrrrwwwwwrro
oooooooooooooooo
)");
    EXPECT_EQ(NetworkPicture(WithBorder(), 16), R"(
oooooooooooooooo
o...uuuuuu.....o
o...uuuuuuuuu..o
o...uuuuuuuuuuuo
o...uuuuuuuuuuuo
o...uuuuuuuuubbo
o...uuuuuuuubbbo
o...uuuuuuubbbbo
o...uuuuuubbbbbo
o...uuuubbbbbbbo
o...uuubbbbbbbbo
o...uubbbbbbbbbo
o...ubbbbbbbbbbo
o...bbbbbbbbbbbo
o.ddbbbbbbbbbbbo
oooooooooooooooo
)");
    // The bar starts at pixel 1 and is two pixels narrower than the icon.
    EXPECT_EQ(MemoryPicture(WithBorder(), 16, 42), R"(
oooooooooooooooo
otttttttttttttto
ot#####.......to
ot#####.......to
otttttttttttttto
o..............o
o..............o
o..............o
o..............o
o..............o
o..............o
o..............o
o..............o
o..............o
o..............o
oooooooooooooooo
)");
}

const std::string Bare16 = Picture([] {
    Canvas canvas(16);
    Clear(canvas, Background);
    return canvas;
}());

TEST(PaintIcons, AnEmptyHistoryIsTheBareBackground) {
    const MetricRing<std::int32_t> percentages(16);
    const MetricRing<std::uint64_t> rates(4096);
    EXPECT_EQ(Picture(PaintCpuIcon(TestSettings(), percentages, 16)), Bare16);
    EXPECT_EQ(Picture(PaintDiskIcon(TestSettings(), percentages, percentages, true, 16)), Bare16);
    EXPECT_EQ(Picture(PaintNetworkIcon(TestSettings(), rates, rates, 16)), Bare16);
}

TEST(PaintIcons, ASizeOfNothingIsOnePixel) {
    const auto percentages = Ramp<std::int32_t>(3, 50, 1);
    const auto rates = Ramp<std::uint64_t>(3, 50000, 1);
    for (const std::uint32_t size : {0U, 0x80000000U, 0xFFFFFFFFU}) {
        EXPECT_EQ(Picture(PaintCpuIcon(TestSettings(), percentages, size)), "\n#\n") << size;
        EXPECT_EQ(Picture(PaintDiskIcon(TestSettings(), percentages, percentages, true, size)), "\nw\n") << size;
        EXPECT_EQ(PaintNetworkIcon(TestSettings(), rates, rates, size).pixels.size(), 1U) << size;
        EXPECT_EQ(Picture(PaintMemoryIcon(TestSettings(), 20, size).canvas), "\n.\n") << size;
    }
}

TEST(PaintDiskIcon, WithoutValidDataIsBareButKeepsItsBorder) {
    const auto history = Ramp<std::int32_t>(16, 20, 4);
    EXPECT_EQ(Picture(PaintDiskIcon(TestSettings(), history, history, false, 16)), Bare16);
    EXPECT_EQ(Picture(PaintDiskIcon(WithBorder(), history, history, false, 4)), "\noooo\no..o\no..o\noooo\n");
}

TEST(PaintDiskIcon, EqualValuesShowTheWriteColour) {
    const auto history = Ramp<std::int32_t>(1, 50, 0);
    EXPECT_EQ(Picture(PaintDiskIcon(TestSettings(), history, history, true, 4)), "\n....\n...w\n...w\n...w\n");
}

TEST(PaintIcons, NoColourIsAHoleInTheCpuIconAndBackgroundInTheNetworkIcon) {
    AppSettings settings = TestSettings();
    settings.colors[CpuFg] = ColorNone;
    settings.colors[NetDown] = ColorNone;
    const auto percentages = Ramp<std::int32_t>(2, 50, 50);
    EXPECT_EQ(Picture(PaintCpuIcon(settings, percentages, 4)), "\n... \n..  \n..  \n..  \n");
    EXPECT_EQ(Picture(PaintNetworkIcon(settings, Rates({10000, 20000}), Rates({}), 4)), "\n....\n....\n....\n....\n");
}

TEST(PaintNetworkIcon, WithoutACommonColourTheLowerPartStaysBackground) {
    AppSettings settings = TestSettings();
    settings.colors[NetBoth] = ColorNone;
    EXPECT_EQ(Picture(PaintNetworkIcon(settings, Rates({20000, 5000}), Rates({10000, 20000}), 4)),
              "\n..du\n..du\n...u\n....\n");
}

TEST(PaintNetworkIcon, ASpikeIsCutAtTheTop) {
    // The scale is the second highest, 20000: the spike of 5000000 is as high as the 20000.
    EXPECT_EQ(Picture(PaintNetworkIcon(TestSettings(), Rates({100, 5000000, 20000}), Rates({}), 4)),
              "\n..dd\n..dd\n..dd\n..dd\n");
}

TEST(PaintNetworkIcon, PointsOlderThanTheIconIsWideDoNotSetTheScale) {
    EXPECT_EQ(
        Picture(PaintNetworkIcon(TestSettings(), Rates({9000000, 9000000, 10000, 20000, 30000, 20000}), Rates({}), 4)),
        Picture(PaintNetworkIcon(TestSettings(), Rates({10000, 20000, 30000, 20000}), Rates({}), 4)));
}

TEST(PaintMemoryIcon, WhereTheTextGoes) {
    struct Row {
        bool bar;
        bool border;
        std::uint32_t size;
        std::int32_t top, bottom;
    };
    const std::vector<Row> rows = {
        {true, false, 16, 4, 16},  // 12 rows under the bar
        {true, true, 16, 5, 15},  {false, false, 16, 0, 16}, {false, true, 16, 1, 15}, {true, false, 20, 5, 20},
        {true, true, 24, 7, 23},  {true, false, 32, 8, 32},  {true, true, 48, 13, 47}, {true, false, 1, 4, 1},
    };
    for (const Row& row : rows) {
        AppSettings settings = row.border ? WithBorder() : TestSettings();
        settings.bar = row.bar;
        const MemoryIconPainting painting = PaintMemoryIcon(settings, 42, row.size);
        EXPECT_EQ(painting.textRows.top, row.top) << row.size << row.bar << row.border;
        EXPECT_EQ(painting.textRows.bottom, row.bottom) << row.size << row.bar << row.border;
        EXPECT_EQ(painting.alignBottom, row.bar);
    }
}

TEST(PaintMemoryIcon, WithoutBarIsOnlyBackgroundAndBorder) {
    AppSettings settings = WithBorder();
    settings.bar = false;
    EXPECT_EQ(MemoryPicture(settings, 4, 42), "\noooo\no..o\no..o\noooo\n");
}

TEST(PaintMemoryIcon, TheFontGrowsWithTheIcon) {
    struct Row {
        std::uint32_t size;
        std::int32_t fontSize, height;
    };
    const std::vector<Row> rows = {{16, 13, 13}, {20, 13, 16}, {24, 13, 19}, {32, 13, 26}, {48, 32, 96}, {1, 6, 0}};
    for (const Row& row : rows) {
        AppSettings settings = TestSettings();
        settings.font_name = L"Any Font";
        settings.font_size = row.fontSize;
        settings.font_bold = row.size == 20;
        const TextFont font = PaintMemoryIcon(settings, 42, row.size).font;
        EXPECT_EQ(font.name, L"Any Font");
        EXPECT_EQ(font.height, row.height) << row.size;
        EXPECT_EQ(font.bold, row.size == 20);
    }
}

TEST(PaintMemoryIcon, TheTextIsThePlainNumber) {
    const std::vector<std::pair<std::int32_t, std::wstring>> rows = {{-1, L"0"},  {0, L"0"},   {9, L"9"},
                                                                     {10, L"10"}, {99, L"99"}, {100, L"100"}};
    for (const auto& [percent, text] : rows)
        EXPECT_EQ(PaintMemoryIcon(TestSettings(), percent, 16).text, text);
}

TEST(PaintMemoryIcon, TheLevelChoosesAllThreeColours) {
    const AppSettings defaults = MakeDefaultSettings();
    const std::vector<std::pair<std::int32_t, ColorValue>> rows = {{49, 0xFFFFFF}, {50, 0xFFFFFF}, {74, 0xFFFFFF},
                                                                   {75, 0xFFFF28}, {89, 0xFFFF28}, {90, 0xFF5555},
                                                                   {100, 0xFF5555}};
    for (const auto& [percent, text] : rows) {
        const MemoryIconPainting painting = PaintMemoryIcon(defaults, percent, 16);
        EXPECT_EQ(painting.textColor, text) << percent;
        EXPECT_EQ(painting.canvas.pixels.back(), 0U) << "a transparent background, and no border";
    }
    AppSettings settings = WithBorder();
    settings.colors[Mem2Bg] = 0xCC0000;
    settings.colors[Mem2Border] = 0x00CC00;
    settings.bar = false;
    EXPECT_EQ(MemoryPicture(settings, 3, 80), "\nwww\nwrw\nwww\n");
}

TEST(PaintMemoryIcon, ATransparentBackgroundCountsAsBlackForTheTrack) {
    AppSettings settings = TestSettings();
    settings.colors[MemBg] = ColorNone;
    settings.colors[MemText] = 0xFFFFFF;
    const Canvas canvas = PaintMemoryIcon(settings, 50, 8).canvas;
    EXPECT_EQ(PixelPicture(canvas.pixels, 8, {{0, ' '}, {0xFF808080, 't'}, {0xFFFFFFFF, '#'}}), R"(
tttttttt
t###   t
t###   t
tttttttt
        
        
        
        
)");
}

}  // namespace
}  // namespace kestrane
