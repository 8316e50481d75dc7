#include "display/waterfall/Palette.h"

#include <algorithm>
#include <cmath>

namespace quorl {

namespace {

// Red, green and blue as polynomials of the place, the constant first.
using Polynomials = std::array<std::array<double, 3>, 7>;

constexpr Polynomials kViridis{{{0.2777273272234177, 0.005407344544966578, 0.3340998053353061},
                                {0.1050930431085774, 1.404613529898575, 1.384590162594685},
                                {-0.3308618287255563, 0.214847559468213, 0.09509516302823659},
                                {-4.634230498983486, -5.799100973351585, -19.33244095627987},
                                {6.228269936347081, 14.17993336680509, 56.69055260068105},
                                {4.776384997670288, -13.74514537774601, -65.35303263337234},
                                {-5.435455855934631, 4.645852612178535, 26.3124352495832}}};
constexpr Polynomials kInferno{{{0.0002189403691192265, 0.001651004631001012, -0.01948089843709184},
                                {0.1065134194856116, 0.5639564367884091, 3.932712388889277},
                                {11.60249308247187, -3.972853965665698, -15.9423941062914},
                                {-41.70399613139459, 17.43639888205313, 44.35414519872813},
                                {77.162935699427, -33.40235894210092, -81.80730925738993},
                                {-71.31942824499214, 32.62606426397723, 73.20951985803202},
                                {25.13112622477341, -12.24266895238567, -23.07032500287172}}};

double Evaluate(const Polynomials& terms, std::size_t channel, double x) {
  double sum = 0.0;
  for (std::size_t power = terms.size(); power-- > 0;) sum = sum * x + terms[power][channel];
  return sum;
}

}  // namespace

std::uint32_t PaletteColour(Palette palette, double place) {
  const double x = std::isfinite(place) ? std::clamp(place, 0.0, 1.0) : 0.0;
  std::uint32_t pixel = 0xFF;
  for (std::size_t channel = 0; channel < 3; ++channel) {
    const double share = palette == Palette::Grey
                             ? x
                             : Evaluate(palette == Palette::Inferno ? kInferno : kViridis, channel, x);
    pixel = pixel << 8 | static_cast<std::uint32_t>(std::lround(std::clamp(share, 0.0, 1.0) * 255.0));
  }
  return pixel;
}

}  // namespace quorl
