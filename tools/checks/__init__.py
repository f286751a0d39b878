"""The checks behind tools/check. Each module has functions that take a Tree and give Problems."""
