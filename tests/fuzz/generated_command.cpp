#include "tests/fuzz/generated_command.h"

namespace fuzz {
namespace {

constexpr const char* kDesigns[] = {"/ONESAMPLE x y s",
                                    "/ONESAMPLE x TESTVAL=0.9",
                                    "/PAIREDSAMPLES x y g",
                                    "/PAIREDSAMPLES x y WITH y s",
                                    "/PAIREDSAMPLES x s WITH y g (PAIRED)",
                                    "/INDEPENDENTSAMPLES x y BY g",
                                    "/INDEPENDENTSAMPLES x BY g SELECT=MIDPOINT",
                                    "/INDEPENDENTSAMPLES x y BY g SELECT=CUTPOINT(1)",
                                    "/INDEPENDENTSAMPLES x BY s SELECT=LEVEL('yes' 'no')",
                                    "/INDEPENDENTSAMPLES x BY g SELECT=LEVEL(0 1)"};
constexpr const char* kMethods[] = {"",
                                    " TESTTYPES=ALL CITYPES=ALL",
                                    " TESTTYPES=NONE CITYPES=WALD",
                                    " TESTTYPES=WALDCC CITYPES=NONE",
                                    " TESTTYPES=MIDP CITYPES=WALDCC",
                                    " TESTTYPES=NONE CITYPES=NEWCOMBE"};
constexpr const char* kSuccess[] = {"",
                                    " /SUCCESS VALUE=FIRST",
                                    " /SUCCESS VALUE=MIDPOINT",
                                    " /SUCCESS VALUE=CUTPOINT(0.5)",
                                    " /SUCCESS VALUE=LEVEL(1)",
                                    " /SUCCESS VALUE=LEVEL(0 2)"};
constexpr const char* kMissing[] = {"", " /MISSING SCOPE=LISTWISE", " /MISSING USERMISSING=INCLUDE",
                                    " /MISSING SCOPE=LISTWISE USERMISSING=INCLUDE"};
constexpr const char* kCriteria[] = {"", " /CRITERIA CILEVEL=0", " /CRITERIA CILEVEL=99.9999999999",
                                     " /CRITERIA CILEVEL=50"};

}  // namespace

std::string commandFrom(Choices& choices) {
  std::string command = "PROPORTIONS ";
  command += choices.of(kDesigns);
  command += choices.of(kMethods);
  command += choices.of(kSuccess);
  command += choices.of(kMissing);
  command += choices.of(kCriteria);
  return command + ".";
}

}  // namespace fuzz
