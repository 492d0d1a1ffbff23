# Makes files/: Rscript make_files.R, in this folder. R 4.2.2, foreign 0.8-84, haven 2.5.1.
library(foreign)
library(haven)

people <- data.frame(
  outcome = c(1, 0, 1, 1, 0, NA, 1, 0),
  arm = c(1, 1, 2, 2, 1, 2, 2, 1),
  site = c("north", "south", "north", "", "south", "north", "west", "west"),
  seen = as.Date(c("2024-01-05", "1959-12-31", "1960-01-01", "2000-02-29", NA, "1970-01-01", "2024-01-05", "2024-01-05")),
  stringsAsFactors = FALSE)

# foreign: factors become value labels; dates become their number of days, without a display format; it
# knows no letters of missing values.
plain <- people
plain$site[4] <- "centre"  # it writes no blank texts
plain$arm <- factor(plain$arm, levels = 1:2, labels = c("Placebo", "Drug"))
attr(plain, "var.labels") <- c("Outcome", "Arm", "Site", "First seen")
for (version in c(6, 8, 10)) {
  write.dta(plain, sprintf("files/foreign_%d.dta", version), version = version, convert.factors = "labels")
}

# haven: labels of variables and of values, letters, dates, times and moments.
full <- people
full$outcome <- labelled(c(1, 0, 1, tagged_na("a"), 0, NA, 1, tagged_na("z")),
                         c(Same = 0, Better = 1, Refused = tagged_na("a")), label = "Outcome")
full$arm <- labelled(people$arm, c(Placebo = 1, Drug = 2), label = "Arm")
full$met <- as.POSIXct(c("2024-01-05 12:30:00", "1959-12-31 23:59:59", "1960-01-01 00:00:00", "2000-02-29 06:07:08",
                         NA, "1970-01-01 00:00:00", "2024-01-05 12:30:00", "2016-12-31 23:59:59"), tz = "UTC")
for (version in c(8, 13, 14)) {
  write_dta(full, sprintf("files/haven_%d.dta", version), version = version)
}
# In transport files letters are capitals, and there are times of day.
full$outcome <- labelled(c(1, 0, 1, tagged_na("A"), 0, NA, 1, tagged_na("Z")), label = "Outcome")
full$clock <- hms::hms(c(0, 1, 3600, 45000, NA, 86399, 60, 61))
for (version in c(5, 8)) {
  write_xpt(full, sprintf("files/haven_%d.xpt", version), version = version, name = "people")
}
