# One peer's job: Rscript scripts/peers.R FILE WORKLOAD prints "peer<tab>median seconds" for each peer of the
# workload whose packages are there. Packages and data are loaded before the clock starts.
arguments <- commandArgs(TRUE)
file <- arguments[1]
workload <- arguments[2]

has <- function(...) all(vapply(c(...), requireNamespace, TRUE, quietly = TRUE))
seconds <- function(job) {
  times <- c()
  while (length(times) < 3 || (sum(times) < 1 && length(times) < 15)) {
    gc(FALSE)
    times <- c(times, system.time(job(), gcFirst = FALSE)[["elapsed"]])
  }
  median(times)
}
# Jobs below the clock's millisecond are repeated inside one measurement.
report <- function(peer, job, repeats = 1) {
  time <- seconds(function() for (i in seq_len(repeats)) job()) / repeats
  cat(sprintf("%s\t%.9f\n", peer, time))
}

numbers <- function() {
  if (has("data.table")) data.table::fread(file, data.table = FALSE) else read.csv(file)
}
# What an import here finds out besides the cells: gaps, distinct values, range, mean, first values.
profile <- function(data) {
  columns <- lapply(data, function(values) {
    present <- values[!is.na(values)]
    list(length(values) - length(present), data.table::uniqueN(present),
         if (is.numeric(values)) c(range(present), mean(present)), head(present, 4))
  })
  list(columns, rowSums(is.na(data)))
}

import <- function() {
  if (has("data.table")) {
    report("data.table::fread", function() data.table::fread(file))
    report("fread and column profile", function() profile(data.table::fread(file)))
  }
  if (has("readr")) {
    report("readr::read_csv", function() {
      readr::read_csv(file, show_col_types = FALSE, progress = FALSE, lazy = FALSE)
    })
  }
  if (file.size(file) < 2e7) report("read.csv", function() read.csv(file))
}
describe <- function() {
  data <- numbers()
  report("summary and sd", function() list(summary(data), sapply(data, sd, na.rm = TRUE)))
  if (has("psych")) report("psych::describe", function() psych::describe(data))
}
alpha <- function() {
  data <- na.omit(numbers())
  items <- as.matrix(data)
  report("cov() and the formula", function() {
    covariance <- cov(items)
    k <- ncol(items)
    list(k / (k - 1) * (1 - sum(diag(covariance)) / sum(covariance)), cov2cor(covariance))
  })
  if (has("psych")) report("psych::alpha", function() suppressWarnings(psych::alpha(data)))
}
rankCorrelation <- function(method, largest) {
  data <- numbers()
  repeats <- max(1, 1e5 %/% nrow(data))
  if (nrow(data) <= largest) {
    report(sprintf("cor(%s)", method), function() cor(data$x, data$y, method = method),
           if (method == "kendall") 1 else repeats)
  }
  if (method == "kendall" && has("pcaPP")) {
    report("pcaPP::cor.fk", function() pcaPP::cor.fk(data$x, data$y), repeats)
  }
}
leastSquares <- function() {
  data <- numbers()
  report("lm, summary, confint", function() {
    model <- lm(y ~ . - yb, data)
    list(summary(model), confint(model))
  })
  design <- cbind(1, as.matrix(data[, -(1:2)]))
  report(".lm.fit", function() .lm.fit(design, data$y))
}

switch(workload,
  csv_likert = , csv_numeric = , csv_wide = , csv_text = import(),
  describe = describe(),
  alpha = alpha(),
  spearman = rankCorrelation("spearman", Inf),
  # Quadratic: at 1e5 rows it takes minutes.
  kendall = rankCorrelation("kendall", 1e4),
  ols = leastSquares())
