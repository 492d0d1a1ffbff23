# Writes r_boot.csv and r_mice.csv: what R's packages boot (boot) and mice (pool.scalar) find for the
# same data. Run: Rscript resampling_r.R DIRECTORY; the draws take a minute.

directory <- commandArgs(trailingOnly = TRUE)
if (length(directory) != 1) stop("Run: Rscript resampling_r.R DIRECTORY")
suppressPackageStartupMessages({
  library(boot)
  library(mice)
})

origin <- function(package) {
  sprintf("%s, package %s %s", R.version.string, package, packageVersion(package))
}
write <- function(file, about, rows) {
  con <- file(file.path(directory, file), "w")
  on.exit(close(con))
  writeLines(c(paste0("# ", about), paste0("# ", paste(names(rows), collapse = ","))), con)
  for (i in seq_len(nrow(rows))) writeLines(paste(format_row(rows[i, ]), collapse = ","), con)
}
format_row <- function(row) {
  sapply(row, function(v) if (is.numeric(v)) sprintf("%.17g", v) else v)
}

# Standard errors. Samples of whole cases, not group by group.
draws <- 100000
set.seed(20261121)
one_sample <- function(x, n) {
  y <- rep(1:0, c(x, n - x))
  sd(boot(y, function(d, i) mean(d[i]), draws)$t)
}
independent <- function(x1, n1, x2, n2) {
  d <- data.frame(y = rep(c(1, 0, 1, 0), c(x1, n1 - x1, x2, n2 - x2)), g = rep(1:2, c(n1, n2)))
  sd(boot(d, function(d, i) {
    y <- d$y[i]
    first <- d$g[i] == 1
    mean(y[first]) - mean(y[!first])
  }, draws)$t, na.rm = TRUE)
}
paired <- function(both, first, second, neither) {
  d <- rep(c(0, 1, -1), c(both + neither, first, second))
  sd(boot(d, function(d, i) mean(d[i]), draws)$t)
}
boots <- rbind(
  data.frame(design = "one-sample", counts = "5 25", error = one_sample(5, 25)),
  data.frame(design = "one-sample", counts = "81 263", error = one_sample(81, 263)),
  data.frame(design = "independent", counts = "11 13 3 11", error = independent(11, 13, 3, 11)),
  data.frame(design = "independent", counts = "63 100 40 80",
             error = independent(63, 100, 40, 80)),
  data.frame(design = "paired", counts = "53 7 16 24", error = paired(53, 7, 16, 24)))
write("r_boot.csv", c(
  "what:   bootstrap standard errors of a proportion (successes, cases), of a difference of two",
  "        groups (successes and cases of each; samples without one of them left out) and of pairs",
  "        (both, first, second, neither)",
  sprintf("from:   generate/resampling_r.R, %s,", origin("boot")),
  sprintf("        %d samples of whole cases", draws)),
  boots)

# Pooling.
imputations <- list(
  list(n = 25, x = c(10, 11, 9, 10, 12)), list(n = 200, x = c(62, 70, 58)),
  list(n = 1000, x = c(301, 288, 310, 295, 300, 305, 299, 290, 307, 296)),
  list(n = 2000, x = c(3, 5, 4, 9)))
pools <- do.call(rbind, lapply(imputations, function(one) {
  p <- one$x / one$n
  pooled <- pool.scalar(p, p * (1 - p) / one$n, n = one$n, k = 1)
  data.frame(n = one$n, successes = paste(one$x, collapse = " "), estimate = pooled$qbar,
             within = pooled$ubar, between = pooled$b, total = pooled$t, df = pooled$df,
             relative_increase = pooled$r, missing_information = pooled$fmi)
}))
write("r_mice.csv", c(
  "what:   pooled proportions of imputations with x of n successes, variance p (1 - p) / n",
  sprintf("from:   generate/resampling_r.R, %s,", origin("mice")),
  "        pool.scalar"), pools)
