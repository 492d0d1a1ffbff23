# Rscript bootstrap.R FILE SAMPLES: bootstrap of the difference between the proportions of v1 in the
# two groups of arm, by the package boot, as its users write it.
suppressPackageStartupMessages(library(boot))
arguments <- commandArgs(trailingOnly = TRUE)
data <- read.csv(arguments[1])
difference <- function(data, cases) {
  y <- data$v1[cases]
  first <- data$arm[cases] == 1
  mean(y[first], na.rm = TRUE) - mean(y[!first], na.rm = TRUE)
}
set.seed(1)
result <- boot(data[c("v1", "arm")], difference, as.integer(arguments[2]))
# BCa bounds would ask for more samples than there are cases.
print(boot.ci(result, type = "perc"))
