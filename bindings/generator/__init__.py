"""From the public headers to everything that repeats them in other languages and on pages."""
