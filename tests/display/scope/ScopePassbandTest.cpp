// Where on the air what is heard begins and ends: the same as the filters are built to.
#include "display/scope/ScopePassband.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "dsp/chain/VariableFilters.h"

namespace quorl::test {
namespace {

constexpr double kTuned = 7205000.0;

PublicVars VarsOf(std::int32_t mode, bool lowSide) {
  PublicVars vars;
  vars.CurrentDemodMode = mode;
  vars.LowSideLO = lowSide;
  vars.FilterLo = 300;
  vars.FilterHi = 2700;
  vars.BFOOffset = 40;
  return vars;
}

// The board turns the IF over with its oscillator above the signal.
double OnAir(const PublicVars& vars, double intermediate) {
  return kTuned + (vars.LowSideLO ? 1.0 : -1.0) * (intermediate - IFCentre);
}

const BandEdge* Find(const std::vector<BandEdge>& edges, int entry, double hertz) {
  const auto found = std::find_if(edges.begin(), edges.end(), [&](const BandEdge& edge) {
    return edge.Entry == entry && std::abs(edge.Hertz() - hertz) < 0.5;
  });
  return found == edges.end() ? nullptr : &*found;
}

TEST(ScopePassband, SidebandsLieOnTheirSideAndTheCarriersModesOnBoth) {
  for (const bool low : {false, true}) {
    const HeardBand upper = HeardOnAir(VarsOf(DemodMode::USB, low)),
                    lower = HeardOnAir(VarsOf(DemodMode::LSB, low));
    EXPECT_EQ(upper.Low, 340.0);
    EXPECT_EQ(upper.High, 2740.0);
    EXPECT_EQ(lower.Low, -2660.0);
    EXPECT_EQ(lower.High, -260.0);
    EXPECT_EQ(MiddleOfPassband(VarsOf(DemodMode::LSB, low)), -1460.0);
    const HeardBand both = HeardOnAir(VarsOf(DemodMode::AM, low));
    EXPECT_EQ(both.Low, -2660.0);
    EXPECT_EQ(both.High, 2740.0);
  }
}

TEST(ScopePassband, EachEdgeIsWhereItsEntryPutsIt) {
  for (const bool low : {false, true}) {
    for (const std::int32_t mode : {DemodMode::AM, DemodMode::USB, DemodMode::LSB, DemodMode::BC}) {
      PublicVars vars = VarsOf(mode, low);
      vars.CurrentIFFilterMode = IFFilterMode::Manual;
      vars.IFFilterActive = true;
      FilterSettingsRecord& record =
          vars.IFFilterSettings[IFFilterMode::Manual][static_cast<std::size_t>(mode)];
      record.CurrentHi = 1900;
      record.CurrentLo = 700;
      const std::vector<BandEdge> edges = EdgesOf(vars, true, kTuned);
      const FilterEdges built = VariableFilters::IFEdges(vars);
      const auto found = [&](double intermediate) {
        const double hertz = OnAir(vars, intermediate + vars.BFOOffset);
        return Find(edges, CtlIndex::IFHi, hertz) != nullptr || Find(edges, CtlIndex::IFLo, hertz) != nullptr;
      };
      EXPECT_TRUE(found(built.Low) && found(built.High)) << "mode " << mode << " low side " << low;
      // A hertz more of the entry moves the edge of the filter by a hertz, the same way.
      record.CurrentHi += 1;
      const FilterEdges moved = VariableFilters::IFEdges(vars);
      const double change =
          OnAir(vars, moved.Low) - OnAir(vars, built.Low) + OnAir(vars, moved.High) - OnAir(vars, built.High);
      const auto edge = std::find_if(edges.begin(), edges.end(),
                                     [](const BandEdge& one) { return one.Entry == CtlIndex::IFHi; });
      EXPECT_EQ(edge->Slope, change) << "mode " << mode << " low side " << low;
      const HeardBand heard = HeardOnAir(vars);
      EXPECT_LE(heard.High - heard.Low, 2601.0);
      EXPECT_LE(heard.Low, heard.High);
    }
  }
}

TEST(ScopePassband, TheNotchLiesWhereItCuts) {
  for (const bool low : {false, true}) {
    PublicVars vars = VarsOf(DemodMode::AM, low);
    vars.NotchActive = true;
    vars.NotchWidth = 200;
    vars.NotchSettings.AudioCurrent = 1300;
    const double zeroBeat = kTuned + vars.BFOOffset;
    const auto audio = EdgesOf(vars, true, kTuned);
    for (const double pitch : {1200.0, 1400.0}) {
      EXPECT_NE(Find(audio, CtlIndex::NotchC, zeroBeat + pitch), nullptr);
      EXPECT_NE(Find(audio, CtlIndex::NotchC, zeroBeat - pitch), nullptr);
      EXPECT_NE(Find(EdgesOf(vars, false, kTuned), CtlIndex::NotchC, pitch), nullptr);
    }
    vars.CurrentDemodMode = DemodMode::USB;
    EXPECT_EQ(Find(EdgesOf(vars, true, kTuned), CtlIndex::NotchC, zeroBeat - 1200.0), nullptr);
    vars.NotchType = NotchTypes::IF;
    vars.NotchSettings.IFCurrent = 1300;
    vars.NotchCentre = IFCentre + (low ? -1300 : 1300);  // as the receiver places it
    for (const double side : {-100.0, 100.0}) {
      EXPECT_NE(Find(EdgesOf(vars, true, kTuned), CtlIndex::NotchC, OnAir(vars, vars.NotchCentre) + side),
                nullptr);
    }
    EXPECT_EQ(Find(EdgesOf(vars, false, kTuned), CtlIndex::NotchC, 1200.0), nullptr);
    vars.NotchMode = NotchModes::Auto;  // it moves by itself
    for (const BandEdge& edge : EdgesOf(vars, true, kTuned)) EXPECT_NE(edge.Entry, CtlIndex::NotchC);
  }
}

}  // namespace
}  // namespace quorl::test
