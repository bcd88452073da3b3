#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "SorvaneMac/Screens/Screen.h"
#include "SorvaneMac/State/Field.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// One analysis of a screen: what it asks for, what it still lacks, its run, and what it shows.
class Analysis {
public:
    virtual ~Analysis() = default;

    /// The page's title where it is not the screen's.
    virtual std::string heading() const { return {}; }
    /// What the analysis is about, under the title.
    virtual std::string subtitle() const = 0;
    /// Adds the controls of its selections and options.
    virtual void addControls(SetupForm& form) = 0;
    /// Adds what stands below the run button.
    virtual void addFurtherControls(SetupForm&) {}
    /// What the run button says, such as "Run t-test".
    virtual std::string runLabel() const = 0;
    /// What is missing before it can run; absent when it can.
    virtual std::optional<Gate> gate() const = 0;
    /// What a run would work on, in a few words, such as "score by group".
    virtual std::string selection() const = 0;
    /// What a screen says that has not run yet.
    virtual std::string invitation() const {
        return "Press " + runLabel() + " in the Setup panel. Results appear here.";
    }
    /// What a screen says while it runs; absent while it does not, or where nobody waits.
    virtual std::optional<Gate> underWay() const { return std::nullopt; }
    /// Runs on the selections as they stand, keeps the result, and says when that is done. Called
    /// only without a gate.
    virtual void run(const std::function<void()>& finished) = 0;
    virtual bool hasRun() const = 0;
    /// Shows the last run: its result, or a gate that says why there is none.
    virtual void show(ScreenContent& content) const = 0;
    /// Adds what does not come from the run, such as a comparison that ran beside it.
    virtual void showFurther(ScreenContent&) const {}
    /// The field that keeps the last run: the engine's record, or a record with that as its member
    /// `result`; null where none is kept.
    virtual const AnyField* stored() const = 0;
    /// Whether that is such a record.
    virtual bool resultIsMember() const = 0;
    virtual Guide guide() const = 0;
};

/// An analysis that keeps its last run in a field, where it stands until the next run whatever is
/// chosen meanwhile. `Fields` holds the screen's selections; `Run` the result and the names it was
/// run on.
template <typename Fields, typename Run>
class KeptAnalysis : public Analysis {
public:
    KeptAnalysis(StudioState& state, Fields& fields, Field<std::optional<Run>>& stored)
        : state_(state), fields_(fields), stored_(stored) {}

    bool hasRun() const final { return stored_->has_value(); }
    void show(ScreenContent& content) const final { present(**stored_, content); }
    const AnyField* stored() const final { return &stored_; }
    bool resultIsMember() const final {
        return requires(const Run& run) {
            run.result;
        };
    }

protected:
    virtual void present(const Run& run, ScreenContent& content) const = 0;

    StudioState& state_;
    Fields& fields_;
    Field<std::optional<Run>>& stored_;
};

/// One that is done before anybody waits.
template <typename Fields, typename Run>
class StoredAnalysis : public KeptAnalysis<Fields, Run> {
public:
    using KeptAnalysis<Fields, Run>::KeptAnalysis;

    void run(const std::function<void()>& finished) final {
        this->stored_.replace(compute());
        finished();
    }

protected:
    /// Computes on the selections as they stand; also sets the fields that go with the result.
    virtual std::optional<Run> compute() = 0;
};

/// One that runs in the background, under the overlay.
template <typename Fields, typename Run>
class BackgroundAnalysis : public KeptAnalysis<Fields, Run> {
public:
    using KeptAnalysis<Fields, Run>::KeptAnalysis;

    std::optional<Gate> underWay() const final {
        if (!this->state_.isComputingFor(this)) {
            return std::nullopt;
        }
        return Gate{.title = computingLabel(), .lead = this->selection(), .text = statusLine()};
    }
    void run(const std::function<void()>& finished) final {
        this->state_.compute({.label = computingLabel(),
                              .work =
                                  [this, finished, compute = computation()](
                                      std::stop_token, const TaskRunner::Progress& progress) {
                                      // Shared, as functions are copied on their way and a run is large.
                                      return [this, finished,
                                              run = std::make_shared<Run>(compute(progress))] {
                                          this->stored_.replace(std::move(*run));
                                          finished();
                                      };
                                  },
                              .owner = this});
    }

protected:
    using Compute = std::function<Run(const TaskRunner::Progress&)>;

    /// What the overlay says meanwhile.
    virtual std::string computingLabel() const = 0;
    /// What the screen says under it.
    virtual std::string statusLine() const = 0;
    /// The computation, with copies of all that it needs: it runs away from the window's thread.
    virtual Compute computation() const = 0;
};

}  // namespace sorvane
