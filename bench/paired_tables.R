# The three paired-samples tables of all pairs of binary columns with the default methods, as a
# statistician would have R make them: Rscript paired_tables.R DATA.csv OUTPUT_STEM
suppressPackageStartupMessages(library(data.table))
arguments <- commandArgs(trailingOnly = TRUE)
if (length(arguments) != 2 || !nzchar(arguments[2])) {
  stop("two arguments are needed: Rscript paired_tables.R DATA.csv OUTPUT_STEM", call. = FALSE)
}
data <- fread(arguments[1])
m <- as.matrix(data)
storage.mode(m) <- "double"
n <- nrow(m)
both <- crossprod(m)
ones <- diag(both)
pairs <- which(upper.tri(both), arr.ind = TRUE)
pairs <- pairs[order(pairs[, 1], pairs[, 2]), ]
i <- pairs[, 1]
j <- pairs[, 2]
a <- both[pairs]
b <- ones[i] - a
c <- ones[j] - a
d <- n - a - b - c
name <- sprintf("Pair %d: %s - %s", seq_along(i), colnames(m)[i], colnames(m)[j])

statistics <- data.table(pair = rep(name, each = 2), variable = colnames(m)[as.vector(rbind(i, j))])
statistics[, successes := ones[as.vector(rbind(i, j))]]
statistics[, `:=`(trials = n, proportion = successes / n)]
statistics[, error := sqrt(proportion * (1 - proportion) / successes)]

difference <- (b - c) / n
error <- sqrt(b + c - (b - c)^2 / n) / n
z <- qnorm(0.975)
wilson <- function(x) {
  centre <- (x / n + z^2 / (2 * n)) / (1 + z^2 / n)
  half <- z * sqrt(x / n * (1 - x / n) / n + z^2 / (4 * n^2)) / (1 + z^2 / n)
  list(lower = centre - half, upper = centre + half)
}
bonettPrice <- function() {
  middle <- (b - c) / (n + 2)
  half <- z * sqrt(((b + 1) / (n + 2) + (c + 1) / (n + 2) - middle^2) / (n + 2))
  list(lower = middle - half, upper = middle + half)
}
newcombe <- function() {
  p1 <- ones[i] / n
  p2 <- ones[j] / n
  bounds <- wilson(ones)
  l1 <- p1 - bounds$lower[i]
  u1 <- bounds$upper[i] - p1
  l2 <- p2 - bounds$lower[j]
  u2 <- bounds$upper[j] - p2
  A <- a * d - b * c
  phi <- ifelse(2 * A > n, A - n / 2, A) / sqrt(ones[i] * (n - ones[i]) * ones[j] * (n - ones[j]))
  list(
    lower = difference - sqrt(l1^2 - 2 * phi * l1 * u2 + u2^2),
    upper = difference + sqrt(u1^2 - 2 * phi * u1 * l2 + l2^2)
  )
}
interval <- function(method, bounds) {
  data.table(pair = name, method, difference, error, lower = bounds$lower, upper = bounds$upper)
}
intervals <- rbind(interval("Bonett-Price", bonettPrice()), interval("Newcombe", newcombe()))

least <- pmin(b, c)
midp <- pbinom(least, b + c, 0.5) - 0.5 * dbinom(least, b + c, 0.5)
chi <- (b - c) / sqrt(b + c)
tests <- rbind(
  data.table(pair = name, method = "Mid-p Adjusted Binomial", difference, error, z = NA_real_,
             one = midp, two = 2 * midp),
  data.table(pair = name, method = "McNemar", difference, error, z = chi,
             one = pnorm(-abs(chi)), two = 2 * pnorm(-abs(chi)))
)
fwrite(statistics, paste0(arguments[2], "_statistics.csv"))
fwrite(intervals, paste0(arguments[2], "_intervals.csv"))
fwrite(tests, paste0(arguments[2], "_tests.csv"))
