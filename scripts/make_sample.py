#!/usr/bin/env python3
"""Writes the sample study, Resources/SampleEIStudy.csv: 300 made-up people, the same ones at every run.

Usage: make_sample.py [FILE] | make_sample.py --check

Twenty items on emotional intelligence stand in four subscales of five, one item of each worded in reverse
(its name ends in "r"). Training lifts emotional intelligence a little; emotional intelligence goes with
performance at about r = .3. Answers are missing in the ways in which people and programs leave them out.
"""
import csv
import io
import math
import pathlib
import sys

SAMPLE = pathlib.Path(__file__).resolve().parent.parent / "Resources" / "SampleEIStudy.csv"
RESPONDENTS = 300
SUBSCALES = {
    "sa": ["sa1", "sa2", "sa3", "sa4r", "sa5"],  # self-awareness
    "sr": ["sr1", "sr2", "sr3r", "sr4", "sr5"],  # self-regulation
    "mo": ["mo1", "mo2", "mo3", "mo4", "mo5r"],  # motivation
    "em": ["em1", "em2r", "em3", "em4", "em5"],  # empathy
}
LOADINGS = [0.74, 0.70, 0.66, 0.63, 0.72]
# How much easier than the middle each item of a subscale is to agree with.
EASE = [0.25, -0.1, 0.0, -0.35, 0.1]
SATISFACTION = ["satisfaction_1", "satisfaction_2", "satisfaction_3", "satisfaction_4"]
TRAINING = [("Control", 0.0), ("Workshop", 0.30), ("Coaching", 0.50)]
DEPARTMENTS = [("Operations", 30), ("Customer Care", 25), ("Engineering", 20), ("Sales", 15),
               ("Finance", 10)]
GENDERS = [("Woman", 52), ("Man", 45), ("Non-binary", 3)]
ITEM_GAPS = ["", "NA", "n/a", "-"]
OTHER_GAPS = ["", "NA", "n/a", "not answered"]
OPENINGS = [
    "The sessions were clear",
    "I liked the practice in pairs",
    'The part on "active listening" was the most useful',
    "Hard to say after so short a time",
    "I already knew much of this",
    'My manager said "give it a month"',
    "Good examples from daily work",
    "The questions were easy to answer",
]
CLOSINGS = [
    ", and I still use what we learned.",
    ", but there was too little time for questions.",
    ", although the afternoon felt long.",
    "; more of it, please.",
    ', so I would call it "worth the day".',
    ", yet in a busy week little of it remains.",
    ".",
]


class Chance:
    """A SplitMix64 stream and the draws made from it.

    Only integer arithmetic, sums and square roots, so that every Python on every machine gives the same
    study.
    """

    MASK = (1 << 64) - 1

    def __init__(self, seed):
        self.state = seed

    def bits(self):
        self.state = (self.state + 0x9E3779B97F4A7C15) & self.MASK
        mixed = self.state
        mixed = ((mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9) & self.MASK
        mixed = ((mixed ^ (mixed >> 27)) * 0x94D049BB133111EB) & self.MASK
        return mixed ^ (mixed >> 31)

    def share(self):
        return (self.bits() >> 11) / (1 << 53)

    def normal(self):
        return sum(self.share() for _ in range(12)) - 6.0

    def pick(self, values):
        return values[self.bits() % len(values)]

    def pick_weighted(self, pairs):
        drawn = self.bits() % sum(weight for _, weight in pairs)
        for value, weight in pairs:
            if drawn < weight:
                return value
            drawn -= weight
        raise AssertionError("The weights do not add up.")


def mix(loading, common, chance):
    """A standard normal value that correlates with the common one by the loading."""
    return loading * common + math.sqrt(1.0 - loading * loading) * chance.normal()


def answer(position):
    """The box ticked on a scale of five, where most people agree a little."""
    return 1 + sum(position > cut for cut in (-1.8, -0.9, -0.1, 0.9))


def item_answers(ei, chance):
    row = {}
    for names in SUBSCALES.values():
        trait = mix(0.72, ei, chance)
        for name, loading, ease in zip(names, LOADINGS, EASE):
            ticked = answer(mix(loading, trait, chance) + ease)
            row[name] = 6 - ticked if name.endswith("r") else ticked
    return row


def respondent(number, chance):
    training, lift = TRAINING[(number - 1) % len(TRAINING)]
    ei = chance.normal() + lift
    age = min(64, max(19, round(38 + 11 * chance.normal())))
    years = max(0.0, min(age - 18.0, 0.25 * (age - 18) + 3 * chance.normal()))
    satisfied = mix(0.4, ei, chance)
    row = {
        "respondent_id": f"R{number:03d}",
        "age": age,
        "gender": chance.pick_weighted(GENDERS),
        "training_group": training,
        "department": chance.pick_weighted(DEPARTMENTS),
        "years_employed": f"{years:.1f}",
        "performance_score": f"{68 + 9 * mix(0.30, ei, chance):.1f}",
    }
    row.update(item_answers(ei, chance))
    row.update((name, answer(mix(0.7, satisfied, chance))) for name in SATISFACTION)
    row["comment"] = chance.pick(OPENINGS) + chance.pick(CLOSINGS) if chance.share() < 0.45 else ""
    return row


def leave_gaps(row, chance):
    """Takes answers out: now and then one, rarely the rest of a page."""
    items = [name for names in SUBSCALES.values() for name in names]
    for name in items + SATISFACTION:
        if chance.share() < 0.008:
            row[name] = chance.pick(ITEM_GAPS)
    if chance.share() < 0.02:
        for name in SUBSCALES["em"]:
            row[name] = ""
    for name, share in (("age", 0.02), ("gender", 0.01), ("years_employed", 0.03),
                        ("performance_score", 0.04)):
        if chance.share() < share:
            row[name] = chance.pick(OTHER_GAPS)


def study():
    chance = Chance(20240917)
    rows = []
    for number in range(1, RESPONDENTS + 1):
        row = respondent(number, chance)
        leave_gaps(row, chance)
        rows.append(row)
    text = io.StringIO()
    writer = csv.DictWriter(text, fieldnames=list(rows[0]), lineterminator="\n")
    writer.writeheader()
    writer.writerows(rows)
    return text.getvalue()


def main():
    if sys.argv[1:] == ["--check"]:
        if SAMPLE.read_text(encoding="utf-8") != study():
            print(f"{SAMPLE} is not what make_sample.py writes.")
            return 1
        return 0
    target = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else SAMPLE
    target.write_text(study(), encoding="utf-8")
    return 0


if __name__ == "__main__":
    sys.exit(main())
