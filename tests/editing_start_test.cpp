// The modal state before a line, and what is proposed for a start there.

#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>

#include "editing/lead_in.h"

namespace kelvane {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;
using namespace std::string_literals;

std::string example(const std::string& name) {
    std::ostringstream text;
    text << std::ifstream(EXAMPLES "/" + name).rdbuf();
    return text.str();
}

constexpr auto mill = Machining::milling;
constexpr auto lathe = Machining::turning;

/// The words that hold, in the order of `Modal`; doubtful ones with the reason behind a "?".
std::string text_of(const Modal_state& state) {
    static constexpr std::string_view reasons[] = {
        "",    "inc",  "dist",   "var",   "sub",   "file", "jump",  "skip",  "cond",
        "ref", "tool", "offset", "trans", "cycle", "end",  "maker", "unread"};
    std::string text;
    for (const Setting& setting : state.settings) {
        if (!setting.word.empty()) {
            text += (text.empty() ? "" : " ") + setting.word;
            text += setting.known() ? "" : "?";
            text += reasons[static_cast<std::size_t>(setting.doubt)];
        }
    }
    return text;
}

/// The state before `line`, from 1.
std::string state_before(std::size_t line, const std::string& program,
                         std::optional<Machining> machining, std::size_t budget = 1 << 20) {
    Start_reading reading(line - 1, machining);
    while (!reading.step(program, budget)) {
    }
    return text_of(reading.before());
}

TEST(ModalState, OfTheExamples) {
    const struct {
        const char* name;
        std::size_t line;
        const char* state;
    } cases[] = {
        {"cover-plate.nc", 13, "G80 G17 G21 G90 G40 G49"},
        {"cover-plate.nc", 35,
         "G0 G80 G17 G21 G90 G54 G40 G43 H2 F900 S6400 T2 T2 M3 M9 M8 X-95. Y-70. Z2."},
        {"cover-plate.nc", 40,
         "G1 G80 G17 G21 G90 G54 G41 G43 D2 H2 F1100 S6400 T2 T2 M3 M9 M8 X65. Y50. Z-3."},
        {"cover-plate.nc", 103,
         "G0 G80 G17 G21 G91 G54 G40 G43 D12 H2 F2000 S6400 T2 T2 M5 M9 M9 X0. Y0. Z50.?ref"},
        {"cover-plate.nc", 130,
         "G1 G80 G17 G21 G90 G54 G40 G43 D12 H3 F800 S8500 T3 T3 M3 M9 M8 X-53. Y-44. Z-2.4"},
        {"cover-plate.nc", 275,
         "G0 G81 G17 G21 G90 G54 G40 G43 G99 D12 H4 F240 S4000 T4 T4 M3 M9 M8 X-25.456 Y-25.456 "
         "Z-2.5?cycle"},
        {"bolt-circles.nc", 16,
         "G0 G80 G17 G21 G90?jump G54 G40 G43 H8 S3200 T8 T8 M3 M8 X0.?dist Y0.?dist Z30.?dist"},
        {"bolt-circles.nc", 26,
         "G0 G83 G17 G21 G90?jump G54?jump G40 G43?jump G99 H8?jump F420 S3200?jump T8?jump "
         "T8?jump M3?jump M8?jump X#?var Y#?var Z#?cycle"},
        {"drive-shaft.nc", 28,
         "G1 G80 G18 G21 G99 G42 G96 F0.12 S190 G50 S2200 T0101 T0101 M3 M8 X48. Z-160."},
        {"drive-shaft.nc", 29,
         "G0 G80 G18 G21 G99 G40 G96 F0.32 S190 G50 S2200 T0101 T0101 M3 M8 X54.?cycle Z2.?cycle"},
        {"drive-shaft.nc", 43,
         "G0 G80 G18 G21 G99 G40 G97 F0.32?maker S900 G50 S3000 T0505 T0505 M3 M9 M8 X32. Z-72."},
        {"fixture-plate.nc", 15,
         "G0 G80 G17?file G21?file G90?file G54?file G40?file G43 H3 S8500 T3 T3 M3 M9 M8 "
         "X-40.?dist Y-20.?dist Z2.?dist"},
        {"fixture-holes.nc", 4, "G83 G99 F500 X-20.?dist Y-30.?dist Z-18.?cycle"},
        {"fixture-slot.nc", 5, "G1 G80 G91 F2000"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(state_before(c.line, example(c.name), std::nullopt, 50), c.state)
            << c.name << " line " << c.line;
    }
}

TEST(ModalState, OfEveryWayToWriteABlock) {
    const struct {
        const char* name;
        Machining machining;
        std::string program;  ///< the state is that behind its last line
        const char* state;
    } cases[] = {
        {"no blanks, zeros, small letters", mill, "g00g17g21g90g054.1p3x1.y-.5z+2\nn5 G01F.1 Z -1.",
         "G01 G80 G17 G21 G90 G054.1 P3?maker F.1 X1. Y-.5 Z-1."},
        {"comments and a tape mark", mill, "%\nO1 (G1 X1)\nG90 X2.(Y1) Y3.;Z4\n(G91",
         "G90 X2. Y3."},
        {"controls and NULs", mill, "\x11\x12G90\0 X2.\x13"s, "G90 X2."},
        {"CR only", mill, "G90\rX1.\r", "G90 X1."},
        {"a line of a megabyte", mill, "G90" + std::string(1 << 20, ' ') + "X1.", "G90 X1."},
        {"blank lines", mill, "G90\n" + std::string(100'000, '\n') + "X1.", "G90 X1."},
        {"another program", mill, "G90 X1.\nM30\nO2\nY1.", "Y1.?dist"},
        {"behind the end", mill, "G90\nM30\nX1.", "G90?end X1.?dist"},
        {"incremental", mill, "G90X1.Y1.\nG91X5.\nG90", "G90 X1.?inc Y1."},
        {"reference and machine places", mill, "G90X1.Y1.Z1.\nG28 X0.\nG53 Y0.",
         "G90 X1.?ref Y1.?ref Z1."},
        {"dwell and data", mill, "G90G54X1.F5\nG4 X2.F3\nG10 L2 P1 X9.",
         "G90 G54?offset F5 X1.?offset"},
        {"another offset", mill, "G90G54X1.Y1.\nG55X2.", "G90 G55 X2. Y1.?offset"},
        {"the same offset", mill, "G90G54X1.\nG54", "G90 G54 X1."},
        {"perhaps the same", mill, "G90G54\n/G55\nX1.\nG55", "G90 G55 X1.?offset"},
        {"perhaps the same units", mill, "G90G21\n/G20\nX1.\nG20", "G20 G90 X1.?offset"},
        {"local shift", mill, "G90X1.\nG52 X5.", "G90 G52 X5. X1.?offset"},
        {"its end", mill, "G52 X5.\nG52 X0.\nG90 X1.", "G90 G52 X0. X1."},
        {"none of a zero point", mill, "G90\nG92 X1.\nG52 X5.\nG52 X0.", "G90 G92 X1. G52 X0."},
        {"a mirror's axis", mill, "G90X1.Y1.\nG51.1X0.\nX5.\nG50.1X0.", "G90 G50.1 X5.?trans Y1."},
        {"a rotation's centre", mill, "G90X1.\nG68X9.R45.\nG69", "G90 G69 X1."},
        {"a smoothing's axes", mill, "G90X1.\nG5.1Q2X0", "G90 G5.1?maker X0?maker"},
        {"rotation", mill, "G90X1.\nG68 R45.\nX2.", "G90 G68 X2.?trans"},
        {"variables", mill, "G90X#1Y[#2]F#3G#4", "G90?var F#?var X#?var Y#?var"},
        {"an assignment", mill, "G90X1.\n#1=G2", "G90 X1."},
        {"sub-program", mill, "G90X1.\nM98 P10\nY1.", "G90?sub X1.?sub Y1.?dist"},
        {"macro in between", mill, "G90X1.\nG66 P9\nX2.\nG67\nG90", "G90 G67 X2.?sub"},
        {"call by L", mill, "G90\nL10", "G90?sub"},
        {"repeats of a cycle", mill, "G90\nG81 X1.Z-1.L2", "G81 G90 X1. Z-1.?cycle"},
        {"cycle ended by a motion", mill, "G90\nG81X1.Z-1.\nG0Z5.", "G0 G80 G90 X1. Z5."},
        {"cycle along Y", mill, "G18G90Y1.\nG83X1.Z2.Y-9.", "G83 G18 G90 X1. Y-9.?cycle Z2."},
        {"tool made ready", mill, "T1\nM6\nT2 M3 S1\nG90X1.Z1.", "G90 S1 T1 T2 M3 X1. Z1."},
        {"tool change", mill, "T1\nM6\nG90G43H1Z1.M3M8\nT2M6",
         "G90 G43?tool H1 T2 T2 M3?tool M8?tool Z1.?tool"},
        {"change without M6", mill, "G90X1.T1\nT2", "G90 T2 T2 X1.?tool"},
        {"block skip", mill, "G90X1.\n/G91M8\n/2 N5 F5", "G91?skip F5?skip M8?skip X1."},
        {"skipped to the same", mill, "G90\n/G90", "G90"},
        {"a jump over one value", mill, "G21G90\nG90\nIF[#1EQ1]GOTO9\nX1.\nN9", "G21 G90 X1.?jump"},
        {"a jump over two", mill, "G90\nIF[#1EQ1]GOTO9\nG91\nN09", "G91?jump"},
        {"a jump to nobody knows", mill, "G90G54\nN5\nGOTO#1\nG55", "G90 G55"},
        {"an assignment with IF", mill, "G90\nG91\nIF[#1EQ1]THEN#2=1", "G91"},
        {"what is no block", mill, "G90\nL X+10 R0 FMAX", "G90?unread X+10?unread"},
        {"a letter for a digit", mill, "G90\nGO X1.", "G90?unread X1.?unread"},
        {"an unknown code", mill, "G90X1.Y1.F9\nG247 X5.F1 S2",
         "G90 F1?maker S2?maker X5.?maker Y1.?maker"},
        {"that may be a cycle", mill, "G54G0Z9.\nG84.2X1.Z-9.\nG187P2",
         "G0?maker G80?maker G54?maker X1.?maker Z-9.?maker"},
        {"offsets of other makers", mill, "G15H1\nG56H2\nG154P3", "G154 P3?maker G15?maker H2"},
        {"an offset by a variable", mill, "G90G54X1.\n#5221=3.\n#101=5221\nY1.",
         "G90 G54?offset X1.?offset Y1."},
        {"a P for the offset or not", mill, "G54G82X1.P500\nG55M98P2\nG54P3X1.\nG54P4 G80",
         "G80 G54 P4 X1.?offset"},
        {"reference of all axes", mill, "G90X1.Z1.\nG28", "G90 X1.?ref Z1.?ref"},
        {"on a condition", mill, "G90\nIF[#1EQ1]THEN G91 M8", "G91?cond M8?cond"},
        {"a comma for a point", mill, "G90 X1,5", "G90?unread X1?unread"},
        {"a cycle of no times", mill, "G90X1.Z1.\nG81X9.L0\nG80Z5.", "G80 G90 X9.?cycle Z5."},
        {"numbers that count differently", mill, "G90G94F9Z1.\nG95\nG49",
         "G90 G95 G49 F9?maker Z1.?offset"},
        {"spindle and coolant", mill, "M3\nM13", "M13?maker M13?maker"},
        {"lathe words", lathe, "G90X5.\nG0X1.Z1.\nU-1.", "G0 G80 X1.?inc Z1."},
        {"a shift with a greatest speed", lathe, "G50S9\nG50X9.Z9.S8", "G50 X9. Z9. G50 S8"},
        {"lathe feeds", lathe, "G98F100\nG99", "G99 F100?maker"},
        {"lathe threads", lathe, "G0X20.Z5.\nG92X19.Z-9.F1.5", "G0 G92 F1.5 X19.?cycle Z-9.?cycle"},
        {"chamfers", lathe, "G1X20.C1.\nZ5.,C2.\nC90.", "G1 G80 X20. Z5. C90."},
        {"a lathe's other codes", lathe, "G90G95\nG92S9\nX1.Z1.\nG91X2.",
         "G91 G95 G92 S9 X1.?inc Z1."},
        {"both sets mixed", lathe, "G95\nG98", "G98?maker"},
        {"other units", mill, "G21G90X1.\nG20", "G20 G90 X1.?offset"},
        {"some makers' units", mill, "G71", "G71?maker"},
        {"also on lathes", lathe, "G71\nG71U2.R1.", "G71?maker"},
    };
    for (const auto& c : cases) {
        const std::string program = c.program + "\n";
        EXPECT_EQ(state_before(999'999, program, c.machining), c.state) << c.name;
    }
}

TEST(StartProposal, WarnsOfWhatNeedsACarefulOperator) {
    using enum Start_warning;
    const std::string sure = "G17G21G90G54G94 T1M6\nS1M3F1\nG0X1.Y1.Z1.\n";
    const struct {
        Start_warning kind;
        std::string program, block;
        std::size_t line;  ///< from 1, of the reason
    } cases[] = {
        {radius_compensation, sure + "G41D1X2.\n", "X3.", 4},
        {cycle, sure + "G81Z-1.R2.\n", "X3.", 4},
        {contour, "T0101\nG50S9\nG71P1Q2U1.\nN1G0X1.\n", "G1Z1.\nN2X9.", 5},
        {contour, "T0101\nG50S9\nG71P1Q2U1.\n", "N01G0X1.\nN2X9.", 4},
        {contour_above, "T0101\nG50S9\nG71P1Q2U1.\nN1G0X1.\nN2X9.\n", "G70P1Q2", 6},
        {half_cycle, "T0101\nG50S9\nG76P1R9\n", "G76X9.Z-9.P1Q1F1.", 4},
        {arc, sure, "G2X3.R1.", 4},
        {arc, sure + "G3X1.Y2.R3.\n", "X3.R5.", 5},
        {incremental, sure, "G91X3.", 4},
        {incremental, "T0101\nG96S9\n", "W3.", 3},
        {transformed, sure + "G68R9.\n", "X3.", 4},
        {rotary_axis, sure + "B90.\n", "X3.", 4},
        {rotary_axis, sure + "G91A90.\nG90\n", "X3.", 4},
        {position, sure + "G28Z0.\n", "X3.", 4},
        {jumps, sure, "X3.\nGOTO5", 5},
        {variables, sure, "X#1", 4},
        {sub_programs, sure, "X1.\nM98P5", 5},
        {called_files, sure + "CALL A.NC\n", "X1.", 4},
        {block_skip, sure + "/M8\n", "X1.", 4},
        {program_end, sure + "M30\n", "X1.", 4},
        {unread, sure + "FMAX\n", "X1.", 4},
        {other_codes, sure + "M51\n", "X1.", 4},
        {mill_or_lathe, "X1.\n", "X2.", 2},
    };
    const auto has = [](const Start_proposal& proposal, Start_warning kind, std::size_t line) {
        return std::any_of(proposal.warnings.begin(), proposal.warnings.end(),
                           [=](const Warning& w) { return w.kind == kind && w.line + 1 == line; });
    };
    for (const auto& c : cases) {
        const auto lines = std::count(c.program.begin(), c.program.end(), '\n');
        Start_reading reading(static_cast<std::size_t>(lines), std::nullopt);
        reading.step(c.program + c.block + "\n");
        EXPECT_TRUE(has(propose_start(reading), c.kind, c.line))
            << warning_text({c.kind, c.line - 1}) << '\n'
            << c.program << c.block;
    }
    Start_reading plain(3, std::nullopt);
    plain.step(sure + "X5.\n");
    EXPECT_THAT(propose_start(plain).warnings, IsEmpty());
    Start_reading whole_contour(2, std::nullopt);
    whole_contour.step("T0101\nG50S9\nG71P1Q2U1.\nN1G0X1.\nN2X9.\nG70P1Q2");
    EXPECT_FALSE(has(propose_start(whole_contour), contour_above, 6));
    EXPECT_EQ(warning_text({arc, 9}),
              "The block is an arc, its start must be met exactly: line 10.");
}

std::vector<std::string> blocks_for(const std::string& program, std::size_t line) {
    Start_reading reading(line - 1, std::nullopt);
    reading.step(program);
    return propose_start(reading).blocks;
}

TEST(StartProposal, IsWhatAMachinistWouldWrite) {
    EXPECT_THAT(
        blocks_for(example("cover-plate.nc"), 36),
        ElementsAre("(START AT LINE 36 - READ AND EDIT BEFORE SENDING)", "G17 G21 G54 G40 G80 G90",
                    "(CHECK FEED MODE, NOT SET BEFORE)", "(CHECK TOOL, T2, LINE 29)",
                    "(RETRACT THE TOOL, CLEAR OF PART AND CLAMPS, THEN CYCLE START)", "M0",
                    "S6400 M3", "G0 X-95. Y-70.", "G43 H2 Z50.", "M8",
                    "(FEED DOWN TO WHERE THE PROGRAM WAS - CHECK THAT THE TOOL CAN ENTER)",
                    "G1 Z-3. F600"));
    EXPECT_THAT(
        blocks_for("%\nG20G17G90G94G59\nT1M6\nT2S900M4F5.5\nG00X.5Y1.Z.1\nG91\nX.25Z-.5", 7),
        ElementsAre(
            "%", "(START AT LINE 7 - READ AND EDIT BEFORE SENDING)", "G17 G20 G94 G59 G80 G90",
            "(CHECK TOOL, T1, LINE 3)", "(CHECK LAST T, T2, LINE 4)",
            "(RETRACT THE TOOL, CLEAR OF PART AND CLAMPS, THEN CYCLE START)", "M0", "S900 M4",
            "G0 X.5 Y1.", "(FEED DOWN TO WHERE THE PROGRAM WAS - CHECK THAT THE TOOL CAN ENTER)",
            "G1 Z.1 F5.5", "G91", "G00"));
    EXPECT_THAT(blocks_for(example("cover-plate.nc"), 275),
                ElementsAre("(START AT LINE 275 - READ AND EDIT BEFORE SENDING)",
                            "G17 G21 G99 G54 G40 G80 G90", "(CHECK FEED MODE, NOT SET BEFORE)",
                            "(CHECK CYCLE, G81, LINE 265)", "(CHECK TOOL LENGTH, G43, LINE 264)",
                            "(CHECK LENGTH NUMBER, H4, LINE 264)", "(CHECK TOOL, T4, LINE 262)",
                            "(NO MOVE IS PROPOSED, A CYCLE MAY BE ON)",
                            "(NO MOVE IS PROPOSED, THE POSITION IS NOT KNOWN)",
                            "(NO MOVE IS PROPOSED, NO SAFE HEIGHT FOR THE TOOL LENGTH IS KNOWN)",
                            "(LAST POSITION X-25.456 Y-25.456 Z NOT SURE)",
                            "(A START AT THE TOOL CHANGE IS SAFER, LINE 262)",
                            "(BRING THE TOOL TO WHERE THE BLOCK MAY START, THEN CYCLE START)", "M0",
                            "S4000 M3", "M8", "(THE CYCLE IS NOT CALLED AGAIN, LINE 265)",
                            "(CHECK MOTION, G0, LINE 263)", "F240"));
    EXPECT_THAT(
        blocks_for(example("cover-plate.nc"), 103),
        ElementsAre("(START AT LINE 103 - READ AND EDIT BEFORE SENDING)", "G17 G21 G54 G40 G80 G90",
                    "(CHECK FEED MODE, NOT SET BEFORE)", "(CHECK TOOL LENGTH, G43, LINE 31)",
                    "(THE BLOCK CHOSEN CHANGES THE TOOL)",
                    "(RETRACT THE TOOL, CLEAR OF PART AND CLAMPS, THEN CYCLE START)", "M0", "S6400",
                    "G91", "G0 F2000"));
    EXPECT_EQ(blocks_for("G17G21G90G94G54T1M6\nS1M3F9\nG0X1.Y1.\nZ1.\nM8\nX2.", 5).back(), "G0")
        << "the blocks that follow are rapid";
    EXPECT_EQ(blocks_for("G17G21G90G94G54T1M6\nS1M3F9\nG0G43H1X1.Y1.Z1.\n/F5", 4).back(), "G0 F9")
        << "the block may be skipped";
    EXPECT_THAT(blocks_for("G21G90G54 T1\nM6\nG43H1Z5.S900M3M8\nT2\nM6", 5),
                ElementsAre("(START AT LINE 5 - READ AND EDIT BEFORE SENDING)", "G21 G54 G90",
                            "(CHECK PLANE, NOT SET BEFORE)", "(CHECK FEED MODE, NOT SET BEFORE)",
                            "(CHECK TOOL LENGTH, G43, LINE 3)",
                            "(THE BLOCK CHOSEN CHANGES THE TOOL)", "(CHECK LAST T, T2, LINE 4)",
                            "(RETRACT THE TOOL, CLEAR OF PART AND CLAMPS, THEN CYCLE START)", "M0",
                            "(CHECK SPINDLE, M3, LINE 3)", "S900",
                            "(CHECK FLOOD COOLANT, M8, LINE 3)", "(CHECK FEED, NOT SET BEFORE)"));
    const std::string lathe_program =
        "G18G21G99G54\nG50S2500\nT0101\nG96S180M3F.2\nX9.Z1.M8\nT0202\nX5.";
    EXPECT_THAT(blocks_for(lathe_program, 6),
                ElementsAre("(START AT LINE 6 - READ AND EDIT BEFORE SENDING)", "G18 G21 G99 G54",
                            "(THE BLOCK CHOSEN CHANGES THE TOOL)",
                            "(RETRACT THE TOOL, CLEAR OF PART AND CLAMPS, THEN CYCLE START)", "M0",
                            "G50 S2500", "G96 S180 M3", "M8", "F.2"));
    EXPECT_THAT(
        blocks_for(lathe_program, 7),
        IsSupersetOf({"G50 S2500", "G96 S180",
                      "(CHECK SPINDLE, M3, LINE 4, BUT THE TOOL HAS BEEN CHANGED, LINE 6)"}));
    EXPECT_THAT(blocks_for("T0101\nG96S180M3\nX1.", 3),
                IsSupersetOf({"(CHECK SPEED LIMIT, NOT SET BEFORE)", "(CHECK SPEED, S180, LINE 2)",
                              "(CHECK SPINDLE, M3, LINE 2)"}));
    EXPECT_THAT(blocks_for("%\nO1\nG90T1M6\nM30\n\nO2\nX1.", 5), ElementsAre("%"));
    const std::string sure = "G17G21G90G54G94T1M6\nS1M3F1\nG0X1.Y1.";
    const std::pair<const char*, const char*> doubtful_ways[] = {
        {"\nG43.1H1Z5.\nX1.Y1.Z5.", "A CODE IS NOT KNOWN"},
        {"\nH1Z5.", "THE TOOL LENGTH MAY BE ON"},
        {"D1\nZ5.", "THE TOOL LENGTH MAY BE ON"},
        {"\nG43H1Z5.\nH2\nG1Z1.", "NO SAFE HEIGHT FOR THE TOOL LENGTH IS KNOWN"}};
    for (const auto& [blocks, why] : doubtful_ways) {
        EXPECT_THAT(blocks_for(sure + blocks, 99),
                    Contains("(NO MOVE IS PROPOSED, " + std::string(why) + ")"))
            << blocks;
    }
    EXPECT_THAT(blocks_for(sure + "Z1.A0.\nX5.", 4),
                IsSupersetOf({"(CHECK A, A0., LINE 3)", "G0 X1. Y1."}));
    EXPECT_THAT(blocks_for(sure + "Z1.A0.\nX5.\nA90.", 4),
                IsSupersetOf({"(CHECK A, A0., LINE 3)", "(LAST POSITION X1. Y1. Z1. A0.)",
                              "(NO MOVE IS PROPOSED, A ROTARY AXIS MAY STAND ELSEWHERE)"}));
    EXPECT_THAT(
        blocks_for("%\nO1\nG90T1D1M6\nM98P2\nX1.Y1.", 5),
        AllOf(Contains("(CHECK RADIUS NUMBER, D1, LINE 3, BUT A SUB-PROGRAM HAS RUN, LINE 4)"),
              Not(Contains("G90"))));
}

/// What the proposals for every place in a program have in common.
void expect_safe(const std::vector<std::string>& blocks, const std::string& where) {
    bool stopped = false;
    for (const std::string& block : blocks) {
        const Block_words words(block);
        stopped = stopped || block == "M0";
        EXPECT_TRUE(stopped || !words.has_axes()) << where << ": moves before the stop: " << block;
        EXPECT_TRUE(stopped || words.m.empty()) << where << ": " << block;
        EXPECT_EQ(block.find_first_of("#[]:'abcdefghijklmnopqrstuvwxyz"), std::string::npos);
        const bool in_feed = block.starts_with("G1 ");
        const bool to_height = block.starts_with("G43 H") && block.ends_with(" Z50.");
        EXPECT_TRUE(!words['Z'] || in_feed || to_height) << where << ": " << block;
        EXPECT_EQ(block.find("G41"), block[0] == '(' ? block.find("G41") : std::string::npos);
    }
    EXPECT_TRUE(stopped) << where;
}

TEST(StartProposal, NeverMovesBeforeTheStopNorFallsIntoThePart) {
    for (const std::string name : {"bolt-circles.nc", "cover-plate.nc", "drive-shaft.nc",
                                   "fixture-holes.nc", "fixture-plate.nc", "fixture-slot.nc"}) {
        const std::string program = example(name);
        const auto lines =
            static_cast<std::size_t>(std::count(program.begin(), program.end(), '\n'));
        EXPECT_TRUE(blocks_for(program, 1).empty());
        for (std::size_t line = 2; line <= lines + 1; line += lines > 100 ? 5 : 1) {
            expect_safe(blocks_for(program, line), name + " line " + std::to_string(line));
        }
    }
}

}  // namespace
}  // namespace kelvane
