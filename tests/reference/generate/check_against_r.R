# Compares the reference values with R's own procedures where R has the same method: binom.test,
# prop.test, mcnemar.test, qbeta, pbinom. Run: Rscript check_against_r.R [DIRECTORY OF THE CSV FILES]
# Ends with status 1 when a value differs by more than the tolerance of its line.

directory <- commandArgs(trailingOnly = TRUE)
directory <- if (length(directory)) directory[1] else ".."

read_rows <- function(file) {
  lines <- readLines(file.path(directory, file))
  names <- sub("^# ", "", tail(grep("^#", lines, value = TRUE), 1))
  rows <- read.csv(text = lines[!grepl("^#", lines)], header = FALSE, colClasses = "character")
  colnames(rows) <- strsplit(names, ",")[[1]]
  rows
}
num <- function(text) suppressWarnings(as.numeric(text))

failed <- FALSE
report <- function(what, got, want, tolerance) {
  keep <- !is.na(want)
  error <- abs(got - want)[keep] / pmax(abs(want[keep]), 1e-290)
  bad <- length(error) == 0 || any(is.na(error)) || max(error) > tolerance
  cat(sprintf("%-58s %5d values, largest relative difference %.2g%s\n", what, length(error),
              if (length(error)) max(error) else NA, if (bad) "  FAILED" else ""))
  failed <<- failed || bad
}

# --- one sample ---
rows <- read_rows("onesample_intervals.csv")
rows[c("x", "n", "level", "lower", "upper")] <- lapply(rows[c("x", "n", "level", "lower", "upper")], num)
moderate <- rows$n <= 1e6 & rows$level %in% c(50, 80, 95)

pick <- rows[rows$method == "CLOPPER_PEARSON" & moderate, ]
got <- mapply(function(x, n, l) binom.test(x, n, conf.level = l / 100)$conf.int, pick$x, pick$n, pick$level)
report("binom.test, Clopper-Pearson lower", got[1, ], pick$lower, 1e-10)
report("binom.test, Clopper-Pearson upper", got[2, ], pick$upper, 1e-10)

pick <- rows[rows$method == "JEFFREYS" & moderate, ]
a2 <- (1 - pick$level / 100) / 2
report("qbeta, Jeffreys lower", qbeta(a2, pick$x + .5, pick$n - pick$x + .5), pick$lower, 1e-10)
report("qbeta, Jeffreys upper", qbeta(1 - a2, pick$x + .5, pick$n - pick$x + .5), pick$upper, 1e-10)

score_interval <- function(x, n, l, correct)
  suppressWarnings(prop.test(x, n, conf.level = l / 100, correct = correct)$conf.int)
pick <- rows[rows$method == "WILSON_SCORE" & moderate & rows$x > 0 & rows$x < rows$n, ]
got <- mapply(score_interval, pick$x, pick$n, pick$level, FALSE)
report("prop.test, Wilson lower", got[1, ], pick$lower, 1e-9)
report("prop.test, Wilson upper", got[2, ], pick$upper, 1e-9)
# prop.test lessens the correction when x is within 1/2 of n/2
pick <- rows[rows$method == "WILSON_SCORECC" & moderate & rows$x > 0 & rows$x < rows$n &
               abs(rows$x - rows$n / 2) >= .5, ]
got <- mapply(score_interval, pick$x, pick$n, pick$level, TRUE)
report("prop.test, corrected Wilson lower", got[1, ], pick$lower, 1e-9)
report("prop.test, corrected Wilson upper", got[2, ], pick$upper, 1e-9)

rows <- read_rows("onesample_tests.csv")
for (column in setdiff(names(rows), c("test"))) rows[[column]] <- num(rows[[column]])
pick <- rows[rows$test == "EXACT" & rows$n <= 1e6, ]
one <- pmin(pbinom(pick$x, pick$n, pick$p0),
            pbinom(pick$x - 1, pick$n, pick$p0, lower.tail = FALSE))
report("pbinom, exact one-sided p", one, pick$one_sided, 1e-9)
mid <- one - dbinom(pick$x, pick$n, pick$p0) / 2
match <- rows[rows$test == "MIDP" & rows$n <= 1e6, ]
stopifnot(nrow(match) == nrow(pick), all(match$x == pick$x), all(match$p0 == pick$p0))
report("pbinom and dbinom, mid-p one-sided p", mid, match$one_sided, 1e-9)
half <- pick[pick$p0 == .5 & pick$n <= 20000, ]
got <- mapply(function(x, n) binom.test(x, n, .5)$p.value, half$x, half$n)
report("binom.test at 1/2, exact two-sided p", got, half$two_sided, 1e-9)

chi <- function(test, correct) {
  pick <- rows[rows$test == test & rows$n <= 1e6 & rows$two_sided > 1e-290, ]
  got <- suppressWarnings(mapply(function(x, n, p) prop.test(x, n, p, correct = correct)$p.value,
                                 pick$x, pick$n, pick$p0))
  report(paste("prop.test two-sided p,", test), got, pick$two_sided, 1e-7)
}
chi("SCORE", FALSE)
chi("SCORECC", TRUE)

# --- paired samples ---
rows <- read_rows("paired_tests.csv")
for (column in setdiff(names(rows), c("test"))) rows[[column]] <- num(rows[[column]])
mcnemar <- function(test, correct) {
  pick <- rows[rows$test == test & rows$n10 + rows$n01 > 0 & rows$n10 + rows$n01 <= 1e8 &
                 (!correct | rows$n10 != rows$n01) & rows$two_sided > 1e-290, ]
  got <- mapply(function(a, b, c, d)
    mcnemar.test(matrix(c(a, c, b, d), 2), correct = correct)$p.value,
    pick$n11, pick$n10, pick$n01, pick$n00)
  report(paste("mcnemar.test two-sided p,", test), got, pick$two_sided, 1e-9)
}
mcnemar("MCNEMAR", FALSE)
mcnemar("MCNEMARCC", TRUE)
pick <- rows[rows$test == "EXACT" & rows$n10 + rows$n01 <= 1e7, ]
m <- pmin(pick$n10, pick$n01)
report("pbinom, paired exact one-sided p", pbinom(m, pick$n10 + pick$n01, .5), pick$one_sided, 1e-9)

# --- independent samples ---
rows <- read_rows("independent_tests.csv")
for (column in setdiff(names(rows), c("test"))) rows[[column]] <- num(rows[[column]])
two <- function(x1, n1, x2, n2, correct, ...)
  suppressWarnings(prop.test(c(x1, x2), c(n1, n2), correct = correct, ...))
pooled <- function(test, correct) {
  pick <- rows[rows$test == test & rows$n1 <= 1e6 & rows$n2 <= 1e6 & !is.na(rows$two_sided) &
                 rows$two_sided > 1e-290 & rows$x1 + rows$x2 > 0 &
                 rows$x1 + rows$x2 < rows$n1 + rows$n2, ]
  got <- mapply(function(a, b, c, d) two(a, b, c, d, correct)$p.value,
                pick$x1, pick$n1, pick$x2, pick$n2)
  # where the correction passes the difference prop.test lessens it to the difference: p = 1 too
  report(paste("prop.test two-sided p,", test), got, pick$two_sided, 1e-7)
}
pooled("WALDH0", FALSE)
pooled("WALDH0CC", TRUE)

rows <- read_rows("independent_intervals.csv")
for (column in setdiff(names(rows), c("method"))) rows[[column]] <- num(rows[[column]])
wald <- function(method, correct) {
  d <- rows$x1 / rows$n1 - rows$x2 / rows$n2
  c <- .5 * (1 / rows$n1 + 1 / rows$n2)
  pick <- rows[rows$method == method & rows$level %in% c(50, 80, 95) & rows$n1 <= 1e6 &
                 rows$n2 <= 1e6 & (!correct | abs(d) > c), ]
  got <- mapply(function(a, b, c, d, l) two(a, b, c, d, correct, conf.level = l / 100)$conf.int,
                pick$x1, pick$n1, pick$x2, pick$n2, pick$level)
  report(paste("prop.test of two groups, lower,", method), got[1, ] + 2, pick$lower + 2, 1e-12)
  report(paste("prop.test of two groups, upper,", method), got[2, ] + 2, pick$upper + 2, 1e-12)
}
wald("WALD", FALSE)
wald("WALDCC", TRUE)

quit(status = if (failed) 1 else 0)
