# Counts of v1 to v8 as a statistician would have R make them, in one sample, weighted, by groups or
# in pairs: Rscript counts.R DATA.csv plain|weight|arm|region|pairs|measure
suppressPackageStartupMessages(library(data.table))
arguments <- commandArgs(trailingOnly = TRUE)
if (length(arguments) != 2) {
  stop("two arguments are needed: Rscript counts.R DATA.csv SHAPE", call. = FALSE)
}
shape <- arguments[2]
variables <- paste0("v", 1:8)
more <- switch(shape, weight = "w", arm = "arm", region = "region", character())
data <- fread(arguments[1], select = if (shape == "measure") "measure" else c(variables, more))
counts <- function(x) c(sum(x == 1, na.rm = TRUE), sum(!is.na(x)))
if (shape == "measure") {
  print(data[, .(sum(measure >= 50), .N)])
} else if (shape == "weight") {
  print(data[, lapply(.SD, function(x) c(sum(w[which(x == 1)]), sum(w[!is.na(x)]))),
             .SDcols = variables])
} else if (shape == "pairs") {
  ones <- as.matrix(data) == 1
  ones[is.na(ones)] <- FALSE
  zeros <- as.matrix(data) == 0
  zeros[is.na(zeros)] <- FALSE
  print(crossprod(ones))
  print(crossprod(ones, zeros))
  print(crossprod(zeros))
} else {
  print(data[, lapply(.SD, counts), by = more, .SDcols = variables])
}
