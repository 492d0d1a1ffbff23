/// Every text of the command that a user may see: keys of the host's message catalogue, passed as
/// they stand.
#pragma once

namespace proportions::texts {

inline constexpr char kCommandName[] = "PROPORTIONS";
inline constexpr char kProcedureTitle[] = "Proportions";

// Errors and warnings about the command.
inline constexpr char kExactlyOneTest[] = "Exactly one test option ...";
inline constexpr char kDuplicateOptions[] = "Param ^1, subcom ^2, duplicate options ...";
inline constexpr char kDuplicateVariables[] = "Subcom ^1, duplicate var names ...";
inline constexpr char kDuplicatesBefore[] = "Before ^1, subcom ^2, dupl var names ...";
inline constexpr char kDuplicatesAfter[] = "After ^1, subcom ^2, dupl var names ...";
inline constexpr char kOnlyOneWith[] = "Only one WITH ...";
inline constexpr char kNoneBeforeWith[] = "No vars before WITH ...";
inline constexpr char kNoneAfterWith[] = "No vars after WITH ...";
inline constexpr char kOnlyPaired[] = "Only PAIRED option ...";
inline constexpr char kNeedTwoVariables[] = "Need two dist vars ...";
inline constexpr char kUnmatchedPairs[] = "Unmatched pair vars ...";
inline constexpr char kDuplicatePairs[] = "Duplicate var pairs ...";
inline constexpr char kMissingBy[] = "Missing BY ...";
inline constexpr char kOnlyOneBy[] = "Only one BY ...";
inline constexpr char kNoneBeforeBy[] = "No vars before BY ...";
inline constexpr char kNoneAfterBy[] = "No vars after BY ...";
inline constexpr char kOnlyOneAfterBy[] = "Only one var after BY ...";
inline constexpr char kStringNeedsLevels[] = "Numeric SELECT LEVEL var ^1 ...";
inline constexpr char kTwoValues[] = "Param ^1, subcom ^2, two values ...";
inline constexpr char kTwoDistinctValues[] = "Param ^1, subcom ^2, two distinct values ...";
inline constexpr char kInvalidSelectDefault[] = "Invalid SELECT LEVEL default ...";
inline constexpr char kInvalidSelectLevel[] = "Invalid SELECT LEVEL ...";
inline constexpr char kDuplicateSuccessLevels[] = "Duplicate SUCCESS LEVEL values ...";
inline constexpr char kNumericSuccessOption[] = "Numeric var SUCCESS option ^1 ...";
inline constexpr char kInvalidSuccessLevel[] = "Invalid SUCCESS LEVEL ...";

// Errors about resampled and imputed data.
inline constexpr char kInvalidBootstrapIndex[] = "Invalid bootstrap index ...";
inline constexpr char kInvalidImputationIndex[] = "Invalid imputation index ...";
inline constexpr char kBootstrapInconsistent[] = "Boot split values not consistent ...";
inline constexpr char kImputationInconsistent[] = "Impute split values not consistent ...";

// Warnings about the data.
inline constexpr char kTooFewCases[] = "Not enough valid cases ...";
inline constexpr char kTooFewCasesSplit[] =
    "Not enough valid cases for split [%1 = %2:,^1 = ^2:]1 ...";
inline constexpr char kTooFewCasesVariable[] = "Not enough valid cases var ^1 ...";
inline constexpr char kTooFewCasesVariableSplit[] =
    "Not enough valid cases var ^1 for split [%1 = %2:,^1 = ^2:]2 ...";
inline constexpr char kTooFewCasesPair[] = "Not enough valid cases pair ^1 var ^2 ^3 ...";
inline constexpr char kTooFewCasesPairSplit[] =
    "Not enough valid cases pair ^1 var ^2 ^3 for split [%1 = %2:,^1 = ^2:]4 ...";
inline constexpr char kTooFewCasesGroup[] = "Not enough valid cases group ...";
inline constexpr char kTooFewCasesGroupSplit[] =
    "Not enough valid cases group for split [%1 = %2:,^1 = ^2:]1 ...";
inline constexpr char kTooFewCasesVariableGroup[] = "Not enough valid cases var ^1 group ...";
inline constexpr char kTooFewCasesVariableGroupSplit[] =
    "Not enough valid cases var ^1 group for split [%1 = %2:,^1 = ^2:]2 ...";

// Notes of the procedure.
inline constexpr char kDefinitionOfMissing[] = "Definition of Missing";
inline constexpr char kMissingIncluded[] = "MISSING is INCLUDE ...";
inline constexpr char kMissingExcluded[] = "MISSING is EXCLUDE ...";
inline constexpr char kCasesUsed[] = "Cases Used";
inline constexpr char kCasesAnalysiswise[] = "Cases used analysiswise ...";
inline constexpr char kCasesListwise[] = "Cases used listwise ...";
inline constexpr char kWeightHandling[] = "Weight Handling";
inline constexpr char kWeightNotApplicable[] = "not applicable";
inline constexpr char kWeightRounded[] = "Weight values are rounded to the nearest whole numbers";

// Notes of cells and categories.
inline constexpr char kStatisticMissing[] = "Stat miss not enough cases ...";
inline constexpr char kStatisticMissingGroup[] = "Stat miss not enough cases group ...";
inline constexpr char kTestValueNote[] = "Test Value = ^1";

// Titles of tables.
inline constexpr char kOneSampleIntervalTable[] = "One-Sample Proportions Confidence Intervals";
inline constexpr char kOneSampleTestTable[] = "One-Sample Proportions Tests";
inline constexpr char kPairedStatisticsTable[] = "Paired-Samples Proportions Statistics";
inline constexpr char kPairedIntervalTable[] = "Paired-Samples Proportions Confidence Intervals";
inline constexpr char kPairedTestTable[] = "Paired-Samples Proportions Tests";
inline constexpr char kGroupStatisticsTable[] = "Independent-Samples Proportions Group Statistics";
inline constexpr char kIndependentIntervalTable[] =
    "Independent-Samples Proportions Confidence Intervals";
inline constexpr char kIndependentTestTable[] = "Independent-Samples Proportions Tests";

// Dimensions.
inline constexpr char kIntervalType[] = "Interval Type";
inline constexpr char kTestType[] = "Test Type";
inline constexpr char kVariables[] = "Variables";
inline constexpr char kStatistics[] = "Statistics";

// Columns.
inline constexpr char kObserved[] = "Observed";
inline constexpr char kSuccesses[] = "Successes";
inline constexpr char kTrials[] = "Trials";
inline constexpr char kProportion[] = "Proportion";
inline constexpr char kObservedMinusTestValue[] = "Observed - Test Value";
inline constexpr char kDifference[] = "Difference in Proportions";
inline constexpr char kStandardError[] = "Asymptotic Standard Error";
inline constexpr char kZ[] = "Z";
inline constexpr char kSignificance[] = "Significance";
inline constexpr char kOneSidedP[] = "One-Sided p";
inline constexpr char kTwoSidedP[] = "Two-Sided p";
inline constexpr char kInterval[] = "^1% Confidence Interval";
inline constexpr char kIntervalOfDifference[] = "^1% Confidence Interval of the Difference";
inline constexpr char kLower[] = "Lower";
inline constexpr char kUpper[] = "Upper";

// Rows.
inline constexpr char kValueEquals[] = "^1 = ^2";
inline constexpr char kValueAtLeast[] = "^1 >= ^2";
inline constexpr char kValueOneOf[] = "^1 = [%1:, ^1:]2";
inline constexpr char kSideBelow[] = "< ^1";
inline constexpr char kSideAtLeast[] = ">= ^1";
inline constexpr char kSideEquals[] = "= ^1";
inline constexpr char kPair[] = "Pair ^1";
inline constexpr char kPairVariables[] = "Pair ^1 vars ^2 ^3 ...";

}  // namespace proportions::texts
