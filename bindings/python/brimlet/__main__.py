"""`python3 -m brimlet`: the companion command."""

from .command import main

if __name__ == "__main__":
    main()
