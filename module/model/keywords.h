/// Names of the command's subcommands, parameters and keywords.
#pragma once

namespace proportions::keywords {

inline constexpr char kOneSample[] = "ONESAMPLE";
inline constexpr char kPairedSamples[] = "PAIREDSAMPLES";
inline constexpr char kIndependentSamples[] = "INDEPENDENTSAMPLES";
inline constexpr char kSuccess[] = "SUCCESS";
inline constexpr char kMissing[] = "MISSING";
inline constexpr char kCriteria[] = "CRITERIA";

inline constexpr char kTestVal[] = "TESTVAL";
inline constexpr char kTestTypes[] = "TESTTYPES";
inline constexpr char kCiTypes[] = "CITYPES";
inline constexpr char kSelect[] = "SELECT";
inline constexpr char kValue[] = "VALUE";
inline constexpr char kScope[] = "SCOPE";
inline constexpr char kUserMissing[] = "USERMISSING";
inline constexpr char kCiLevel[] = "CILEVEL";

inline constexpr char kAll[] = "ALL";
inline constexpr char kNone[] = "NONE";
inline constexpr char kWith[] = "WITH";
inline constexpr char kBy[] = "BY";
inline constexpr char kPaired[] = "PAIRED";
inline constexpr char kAnalysis[] = "ANALYSIS";
inline constexpr char kListwise[] = "LISTWISE";
inline constexpr char kInclude[] = "INCLUDE";
inline constexpr char kExclude[] = "EXCLUDE";

inline constexpr char kFirst[] = "FIRST";
inline constexpr char kLast[] = "LAST";
inline constexpr char kMidpoint[] = "MIDPOINT";
inline constexpr char kCutpoint[] = "CUTPOINT";
inline constexpr char kLevel[] = "LEVEL";

}  // namespace proportions::keywords
