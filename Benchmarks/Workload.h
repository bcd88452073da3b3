#pragma once

#include <functional>
#include <string>
#include <vector>

namespace sorvane {

/// What is timed, and how much it works through.
struct Job {
    std::function<void()> run;
    double amount = 0.0;
    /// Of the amount: "rows", "bytes", "tables".
    std::string unit;
};

/// A job that people wait for, at one size.
struct Workload {
    std::string name;
    std::string size;
    /// What a lean engine should need on two cores of a present server.
    double targetSeconds = 0.0;
    /// Makes ready, untimed.
    std::function<Job()> prepare;
};

// One function per file of this folder.
std::vector<Workload> importWorkloads();
std::vector<Workload> analysisWorkloads();
std::vector<Workload> latentClassWorkloads();
std::vector<Workload> modelFamilyWorkloads();
std::vector<Workload> multilevelWorkloads();
std::vector<Workload> editingWorkloads();
std::vector<Workload> preparationWorkloads();
std::vector<Workload> projectWorkloads();
std::vector<Workload> reportWorkloads();
std::vector<Workload> surveyWorkloads();
std::vector<Workload> windowWorkloads();

}  // namespace sorvane
