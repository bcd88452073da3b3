# One peer's job: Rscript scripts/peers.R FILE WORKLOAD prints "peer<tab>median seconds" for each peer of the
# workload whose packages are there. Packages and data are loaded before the clock starts.
arguments <- commandArgs(TRUE)
file <- arguments[1]
workload <- arguments[2]

has <- function(...) all(vapply(c(...), requireNamespace, TRUE, quietly = TRUE))
seconds <- function(job) {
  times <- c()
  while (length(times) < 3 && sum(times) < 20 || (sum(times) < 1 && length(times) < 15)) {
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

importText <- function() {
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
importSystemFile <- function() {
  if (has("haven")) report("haven::read_sav", function() haven::read_sav(file))
  if (has("foreign")) {
    report("foreign::read.spss", function() {
      suppressWarnings(foreign::read.spss(file, use.value.labels = FALSE, to.data.frame = TRUE))
    })
  }
}
importDataFile <- function() {
  if (has("haven")) report("haven::read_dta", function() haven::read_dta(file))
}
importWorkbook <- function() {
  if (has("readxl")) {
    report("readxl::read_xlsx", function() readxl::read_xlsx(file, progress = FALSE))
  }
  if (has("openxlsx")) report("openxlsx::read.xlsx", function() openxlsx::read.xlsx(file))
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

logistic <- function() {
  data <- numbers()
  report("glm and summary", function() summary(glm(yb ~ . - y, binomial, data)))
}
welch <- function() {
  data <- numbers()
  data <- data[data$g %in% unique(data$g)[1:2], ]
  report("t.test", function() t.test(y ~ g, data))
}
groups <- function() {
  data <- numbers()
  data$g <- factor(data$g)
  report("aov and TukeyHSD", function() {
    model <- aov(y ~ g, data)
    list(summary(model), TukeyHSD(model))
  })
}
factors <- function() {
  data <- numbers()
  if (has("psych")) {
    report("psych::fa(pa, varimax)", function() psych::fa(data, 5, rotate = "varimax", fm = "pa"))
  }
  report("factanal", function() factanal(data, 5))
}
tree <- function() {
  data <- scale(as.matrix(numbers()))
  report("hclust(ward.D2)", function() hclust(dist(data), "ward.D2"))
}
means <- function() {
  data <- scale(as.matrix(numbers()))
  set.seed(1)
  report("kmeans(Lloyd), 1 start", function() {
    suppressWarnings(kmeans(data, 5, iter.max = 100, nstart = 1, algorithm = "Lloyd"))
  })
}
mixed <- function(formula, kenwardRoger = FALSE) {
  data <- numbers()
  if (has("lme4")) report("lme4::lmer", function() lme4::lmer(formula, data))
  if (has("lmerTest")) {
    fit <- function() lmerTest::lmer(formula, data)
    report("lmerTest, Satterthwaite", function() summary(fit()))
    if (kenwardRoger && has("pbkrtest")) {
      report("lmerTest, Kenward-Roger", function() summary(fit(), ddf = "Kenward-Roger"))
    }
  }
}
mixedLogistic <- function() {
  data <- numbers()
  if (has("lme4")) {
    report("lme4::glmer(nAGQ = 15)", function() {
      summary(lme4::glmer(y ~ x1 + x2 + (1 | clinic), data, binomial, nAGQ = 15))
    })
  }
}
confirmatory <- function() {
  if (!has("lavaan")) return()
  data <- numbers()
  items <- split(names(data), (seq_along(data) - 1) %/% (if (ncol(data) == 9) 3 else 5))
  model <- paste0("f", seq_along(items), " =~ ", sapply(items, paste, collapse = " + "),
                  collapse = "\n")
  report("lavaan::cfa and its measures", function() {
    fit <- lavaan::cfa(model, data)
    list(lavaan::parameterEstimates(fit, standardized = TRUE), lavaan::fitMeasures(fit))
  })
}
profiles <- function() {
  if (!has("mclust")) return()
  mclustBIC <- mclust::mclustBIC
  data <- as.matrix(numbers()[, paste0("v", 1:6)])
  report("mclust VVI, 2 to 6, 1 start", function() {
    mclust::Mclust(data, 2:6, "VVI", verbose = FALSE)
  })
}
classes <- function() {
  if (!has("e1071")) return()
  data <- as.matrix(numbers()[, paste0("b", 1:6)])
  report("e1071::lca, 2 to 6, 12 starts", function() {
    for (count in 2:6) for (start in 1:12) e1071::lca(data, count, 200)
  })
}
indirect <- function() {
  if (!has("boot")) return()
  data <- as.matrix(numbers())
  estimate <- function(data, rows) {
    drawn <- data[rows, ]
    toMediator <- .lm.fit(cbind(1, drawn[, c("x", "c1")]), drawn[, "m"])$coefficients[2]
    toOutcome <- .lm.fit(cbind(1, drawn[, c("m", "x", "c1")]), drawn[, "y"])$coefficients[2]
    toMediator * toOutcome
  }
  report("boot with .lm.fit, 5000", function() boot::boot(data, estimate, 5000))
}
imputation <- function() {
  if (!has("mice")) return()
  data <- numbers()
  report("mice(pmm, m = 20, maxit = 10)", function() {
    mice::mice(data, 20, "pmm", maxit = 10, printFlag = FALSE, seed = 1)
  })
}
survival <- function(cox) {
  if (!has("survival")) return()
  data <- numbers()
  Surv <- survival::Surv
  if (cox) {
    report("coxph(breslow) and summary", function() {
      summary(survival::coxph(Surv(time, event) ~ x1 + x2 + x3 + x4 + x5, data, ties = "breslow"))
    })
  } else {
    report("survfit and summary", function() {
      summary(survival::survfit(Surv(time, event) ~ grp, data))
    })
  }
}
weightedMean <- function(replicates) {
  if (!has("survey")) return()
  data <- numbers()
  study <- data[, 1:5]
  if (replicates) {
    weights <- as.matrix(data[, -(1:5)])
    report("svrepdesign and svymean", function() {
      design <- survey::svrepdesign(data = study, weights = ~w, repweights = weights, type = "BRR",
                                    combined.weights = TRUE)
      survey::svymean(~y1, design)
    })
  } else {
    report("svydesign and svymean", function() {
      design <- survey::svydesign(~psu, strata = ~stratum, weights = ~w, data = study, nest = TRUE)
      survey::svymean(~y1, design)
    })
  }
}

switch(workload,
  csv_likert = , csv_numeric = , csv_wide = , csv_text = importText(),
  sav_byte = , sav_none = importSystemFile(),
  dta_118 = importDataFile(),
  xlsx = importWorkbook(),
  describe = describe(),
  alpha = alpha(),
  spearman = rankCorrelation("spearman", Inf),
  # Quadratic: at 1e5 rows it takes minutes.
  kendall = rankCorrelation("kendall", 1e4),
  ttest = welch(),
  anova = groups(),
  ols = leastSquares(),
  logit = logistic(),
  efa = factors(),
  hclust = tree(),
  kmeans = means(),
  lmm_ri = mixed(y ~ x1 + x2 + x3 + (1 | school)),
  lmm_slope = mixed(y ~ x1 + x2 + x3 + (x1 | school), kenwardRoger = TRUE),
  lmm_huge = mixed(y ~ x1 + x2 + x3 + (x1 | school)),
  lmm_cross = mixed(y ~ x1 + x2 + (1 | subject) + (1 | item)),
  glmm_agq15 = mixedLogistic(),
  cfa = confirmatory(),
  lpa = profiles(),
  lca = classes(),
  mediation = indirect(),
  mice = imputation(),
  km = survival(cox = FALSE),
  cox = survival(cox = TRUE),
  svy_rep200 = weightedMean(replicates = TRUE),
  svy_taylor = weightedMean(replicates = FALSE))
