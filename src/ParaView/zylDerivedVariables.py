"""Turns expressions over point arrays into the script of a programmable filter.

Run in the interpreter's __main__ namespace, where a programmable filter later imports the names of
numpy: nothing here may use a built-in function that numpy replaces (abs, all, any, max, min, sum).
"""
import ast
import keyword
import unicodedata


class NameVisitor(ast.NodeVisitor):
    """Collects the name nodes of a parsed expression."""

    def __init__(self):
        self.names = []

    def visit_Name(self, node):
        self.names.append(node)

    @staticmethod
    def spell(names):
        """How an expression spells each name: identifiers as they are, others with '_' for what an
        identifier cannot hold and as many '_' at the end as make the word one of its own.
        """
        words = {}
        taken = {"inputs", "output", "__debug__"}  # what the script itself needs, and what Python keeps
        for name in names:
            plain = name.isidentifier() and not keyword.iskeyword(name) and name not in taken
            if plain and unicodedata.normalize("NFKC", name) == name:
                words[name] = name
        taken.update(words)
        for name in names:
            if name not in words:
                word = ""
                for letter in unicodedata.normalize("NFKC", name):
                    word += letter if ("_" + letter).isidentifier() else "_"
                if not word.isidentifier():
                    word = "_" + word
                while word in taken or keyword.iskeyword(word):
                    word += "_"
                words[name] = word
                taken.add(word)
        return words


def createGraph(existingArrayNames, expressions):
    """What each existing array (nothing) and each derived variable depends on."""
    graph = {name: [] for name in list(existingArrayNames) + list(expressions)}
    names = {word: name for name, word in NameVisitor.spell(list(graph)).items()}
    for derived, expression in expressions.items():
        visitor = NameVisitor()
        try:
            visitor.generic_visit(ast.parse(expression.strip(), derived))
        except Exception as error:
            error.variable = derived
            raise
        for node in visitor.names:
            name = names.get(node.id)
            if name is not None and name not in graph[derived]:
                graph[derived].append(name)
    return graph


def topologicalSort(graph, startingNodes):
    """The nodes that the starting nodes need, level by level, the deepest level first."""
    result = []
    for start in startingNodes:
        path = []
        work = [start]
        while work:
            node = work.pop()
            if node not in path:
                path.append(node)
                for dependency in graph[node]:
                    if dependency not in path:
                        work.insert(0, dependency)
        for node in reversed(path):
            if node not in result:
                result.append(node)
    return result


def createScript(existingArrayNames, expressions, derivedArraysToSave):
    """The script that computes the derived arrays to save and appends them to the output."""
    graph = createGraph(existingArrayNames, expressions)
    words = NameVisitor.spell(list(graph))
    order = []

    def place(node):
        # A variable that is needed on two levels stands before its first user. Stops at a circle.
        if node not in placed:
            placed.add(node)
            for dependency in graph[node]:
                place(dependency)
            order.append(node)

    placed = set()
    for node in topologicalSort(graph, derivedArraysToSave):
        place(node)

    lines = []
    for name in order:
        if name in existingArrayNames:
            lines.append("{0} = inputs[0].PointData[{1!r}]".format(words[name], name))
    for name in order:
        if name in expressions:
            lines.append("{0} = {1}".format(words[name], expressions[name]))
    for name in derivedArraysToSave:
        lines.append("output.PointData.append({0}, {1!r})".format(words[name], name))
    return "\n".join(lines)


if __name__ == "__main__":
    exampleScript = createScript(
        ["pressure", "density", "temperature", "velocity", "Wall Distance"],
        {
            "doubled": "2 * pressure",
            "shifted": "doubled + 4",
            "speed": "mag(velocity)",
            "dynamic": "0.5 * density * speed**2",
            "total": "pressure + dynamic",
            "sound": "sqrt(1.4 * pressure / density)",
            "mach": "speed / sound",
            "near": "Wall_Distance < 0.1",
        },
        ["shifted", "total", "mach", "near"],
    )
