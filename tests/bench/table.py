"""Rows of figures as a table of aligned columns, the first one left-aligned."""


def format_cell(value):
    if not isinstance(value, float):
        return str(value)
    return f"{value:.3g}" if abs(value) < 100 else f"{value:.0f}"


def print_table(title, columns, rows):
    lines = [columns, *([format_cell(row.get(column, "")) for column in columns] for row in rows)]
    widths = [max(len(line[i]) for line in lines) for i in range(len(columns))]
    print(f"\n{title}\n")
    for number, line in enumerate(lines):
        cells = [cell.rjust(width) for cell, width in zip(line, widths)]
        cells[0] = line[0].ljust(widths[0])
        print("  ".join(cells))
        if number == 0:
            print("  ".join("-" * width for width in widths))
