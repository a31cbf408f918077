"""The model generator: schema reader, naming rules, per-kind emitters, file emitters."""
