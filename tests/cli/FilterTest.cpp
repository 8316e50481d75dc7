// What `quorlsdr-cli filter` prints, and the words about the program itself.
#include <cmath>
#include <sstream>

#include "cli/CliRunner.h"

namespace quorl::test {
namespace {

struct Row {
  double Hz, Db, Degrees;
};

class FilterTest : public CliTest {
 protected:
  std::vector<Row> Table(const std::string& options) const {
    const CliResult result = Cli("filter " + options);
    EXPECT_EQ(result.ExitCode, 0) << result.Errors;
    std::istringstream lines(result.Output);
    std::string line;
    std::getline(lines, line);
    EXPECT_EQ(line, "hz,db,degrees");
    std::vector<Row> rows;
    while (std::getline(lines, line)) {
      Row row{};
      EXPECT_EQ(std::sscanf(line.c_str(), "%lf,%lf,%lf", &row.Hz, &row.Db, &row.Degrees), 3) << line;
      rows.push_back(row);
    }
    return rows;
  }
};

TEST_F(FilterTest, BandPassAndBandStopAreEachOthersOpposite) {
  const std::vector<Row> pass = Table("--low 1000 --high 3000"),
                         stop = Table("--low 1000 --high 3000 --reject");
  ASSERT_EQ(pass.size(), 2049U);
  ASSERT_EQ(stop.size(), 2049U);
  EXPECT_EQ(pass.back().Hz, 24000.0);
  for (std::size_t bin = 0; bin < pass.size(); ++bin) {
    const double hz = pass[bin].Hz;
    if (hz > 1100.0 && hz < 2900.0) {
      EXPECT_NEAR(pass[bin].Db, 0.0, 0.1) << hz;
      EXPECT_LT(stop[bin].Db, -60.0) << hz;
    } else if (hz < 900.0 || hz > 3100.0) {
      EXPECT_LT(pass[bin].Db, -60.0) << hz;
      EXPECT_NEAR(stop[bin].Db, 0.0, 0.1) << hz;
    }
  }
}

TEST_F(FilterTest, QuadratureTwinStandsNinetyDegreesApart) {
  const std::vector<Row> in = Table("--low 300 --high 2300"),
                         twin = Table("--low 300 --high 2300 --quadrature");
  for (const std::size_t bin : {50U, 100U, 150U}) {
    EXPECT_NEAR(std::abs(std::remainder(in[bin].Degrees - twin[bin].Degrees, 360.0)), 90.0, 0.1)
        << in[bin].Hz;
    EXPECT_NEAR(in[bin].Db, twin[bin].Db, 0.05);
  }
}

TEST_F(FilterTest, WindowsTradeSlopeAgainstDepth) {
  const auto depth = [this](const std::string& window) {
    double most = -300.0;
    for (const Row& row : Table("--low 1000 --high 3000 --window " + window)) {
      if (row.Hz > 3100.0) most = std::max(most, row.Db);
    }
    return most;
  };
  EXPECT_GT(depth("none"), depth("hamming") + 15.0);
  EXPECT_GT(depth("hamming"), depth("blackman") + 15.0);
}

TEST_F(FilterTest, RefusesWhatIsNoBand) {
  ExpectOneLine(Cli("filter --low 3000 --high 1000"), 2, "--low");
  ExpectOneLine(Cli("filter --low 0 --high 24001"), 2, "--high");
  ExpectOneLine(Cli("filter --low 300"), 2, "--high");
  ExpectOneLine(Cli("filter --low 300 --high 2300 --window kaiser"), 2, "--window");
}

TEST_F(FilterTest, HelpAndVersionAreNoErrors) {
  EXPECT_EQ(Cli("--version").Output.rfind("quorlsdr-cli ", 0), 0U);
  for (const std::string options : {"--help", "receive --help", "filter --help"}) {
    const CliResult result = Cli(options);
    EXPECT_EQ(result.ExitCode, 0);
    EXPECT_EQ(result.Errors, "");
    EXPECT_NE(result.Output.find(options == "--help" ? "receive" : "Usage"), std::string::npos)
        << result.Output;
  }
}

}  // namespace
}  // namespace quorl::test
