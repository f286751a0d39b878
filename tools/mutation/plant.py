"""Writes a source file with mutants in it, each asleep until its number is chosen."""
import re

COMMENT = re.compile(r"//[^\n]*|/\*.*?\*/", re.DOTALL)


def plant(text, mutants):
    """The text (one character a byte) with the mutants, which carry `number`. Lines keep their numbers."""
    return Planter(text, mutants).render(0, len(text), frozenset())


class Planter:
    def __init__(self, text, mutants):
        self.text = text
        # Outer ones first; of the same range the lower number.
        self.mutants = sorted(mutants, key=lambda m: (m["start"], -m["end"], m["number"]))

    def render(self, start, end, done):
        """The range with every mutant in it that is not in `done`."""
        out, at = [], start
        for mutant in self.mutants:
            if mutant["number"] in done or mutant["start"] < at or mutant["end"] > end:
                continue
            out.append(self.text[at:mutant["start"]])
            out.append(self.site(mutant, done | {mutant["number"]}))
            at = mutant["end"]
        out.append(self.text[at:end])
        return "".join(out)

    def site(self, mutant, done):
        chosen = f"::brindle::mutation::Is({mutant['number']})"
        original = self.render(mutant["start"], mutant["end"], done)
        if mutant["kind"] == "statement":
            return f"{{ if (!{chosen}) {original} }}"
        mutated = "".join(piece if isinstance(piece, str) else flat(self.render(*piece, done))
                          for piece in mutant["pieces"])
        return f"({chosen} ? ({mutated}) : ({original}))"


def flat(text):
    return COMMENT.sub(" ", text).replace("\n", " ")
