"""Values of the invariants by a second way: networkx, numpy, scipy, sympy, and brute force from the definitions.

    invariants.py DATABASE.tav > reference.tsv    of the graphs of a database
    invariants.py --named > reference.tsv         of the graphs of graphs.py
    invariants.py --check DATABASE.tav            holds searches.py against bruteforce.py on every twentieth graph
    invariants.py --time DATABASE.tav             what networkx takes for 2000 graphs of the database

Made with Python 3.11, networkx 3.6.1, numpy 2.4.6, scipy 1.17.1, sympy 1.14.0 and python-sat 1.9.dev17. Nothing here is
shared with the program: it must not be mended after what the program finds, but after the definition.

The table has a column a graph: its graph6 string, its title unless it is from a database and, a line an invariant,
"integer" or "real" after the name and then the values; "NA" is undefined, an empty field is not known, since it takes
too long to find.
"""

import argparse
import sys
import time
from functools import cached_property

import networkx as nx
import numpy as np
from networkx.algorithms.threshold import is_threshold_graph
from sympy import ZZ
from sympy.polys.matrices import DomainMatrix

import graphs
from bruteforce import BruteForce
from searches import BLANK, Searches, TooLong


class Graph:
    """A graph and what several invariants need of it."""

    def __init__(self, graph, is_small=None):
        self.graph = graph
        self.order = graph.number_of_nodes()
        self.size = graph.number_of_edges()
        self.vertices = range(self.order)
        self.degrees = [graph.degree[v] for v in self.vertices]
        self.is_small = self.order <= 8 if is_small is None else is_small

    @cached_property
    def hard(self):
        if self.is_small:
            return BruteForce([sum(1 << u for u in self.graph[v]) for v in self.vertices])
        return Searches(self.graph)

    @cached_property
    def symmetry(self):
        return self.hard.automorphisms_and_orbits()

    @cached_property
    def is_connected(self):
        return self.order > 0 and nx.is_connected(self.graph)

    @cached_property
    def distances(self):
        """The matrix; only of a connected graph."""
        lengths = dict(nx.all_pairs_shortest_path_length(self.graph))
        return np.array([[lengths[u][v] for v in self.vertices] for u in self.vertices])

    @cached_property
    def pairs(self):
        """The distances of all pairs."""
        return [int(self.distances[u, v]) for v in self.vertices for u in range(v)]

    @cached_property
    def eccentricities(self):
        return self.distances.max(axis=1)

    @cached_property
    def transmissions(self):
        return self.distances.sum(axis=1)

    @cached_property
    def adjacency(self):
        if self.order == 0:
            return np.zeros((0, 0))
        return nx.to_numpy_array(self.graph, nodelist=self.vertices)

    @cached_property
    def laplacian(self):
        return np.diag(self.degrees) - self.adjacency

    @cached_property
    def eigenvalues(self):
        return np.linalg.eigvalsh(self.adjacency)

    @cached_property
    def laplacian_eigenvalues(self):
        return np.linalg.eigvalsh(self.laplacian)

    @cached_property
    def signless_eigenvalues(self):
        return np.linalg.eigvalsh(np.diag(self.degrees) + self.adjacency)

    @cached_property
    def normalized_eigenvalues(self):
        scale = np.array([1 / d ** 0.5 if d else 0 for d in self.degrees])
        return np.linalg.eigvalsh(scale[:, None] * self.laplacian * scale)

    @cached_property
    def distance_eigenvalues(self):
        return np.linalg.eigvalsh(self.distances)

    def exact(self, matrix):
        return DomainMatrix([[ZZ(int(entry)) for entry in row] for row in matrix], matrix.shape, ZZ)

    def nullity(self, eigenvalue=0):
        """The multiplicity of an integer as an eigenvalue of the adjacency matrix, by exact arithmetic."""
        if self.order == 0:
            return 0
        matrix = self.exact(self.adjacency - eigenvalue * np.eye(self.order))
        return self.order - matrix.to_field().rank()

    def determinant(self, matrix):
        return int(self.exact(matrix).det()) if matrix.shape[0] else 1

    def over_edges(self, value):
        """The sum of a function of the degrees of both ends."""
        return sum((value(self.degrees[u], self.degrees[v]) for u, v in self.graph.edges), 0)


def connected(value):
    """A function that is undefined for disconnected graphs."""
    return lambda g: value(g) if g.is_connected else None


def from_order(least, value):
    """A function that is undefined for graphs on fewer vertices."""
    return lambda g: value(g) if g.order >= least else None


def hard(name):
    def value(g):
        try:
            return getattr(g.hard, name)()
        except TooLong:
            return BLANK

    return value


def mean(values):
    return sum(values) / len(values)


def spanning_trees(g):
    return g.determinant(g.laplacian[1:, 1:]) if g.is_connected else 0


def kirchhoff_index(g):
    inverse = np.linalg.pinv(g.laplacian)
    return sum(inverse[u, u] + inverse[v, v] - 2 * inverse[u, v] for v in g.vertices for u in range(v))


def szeged_index(g):
    return sum(int((g.distances[u] < g.distances[v]).sum()) * int((g.distances[v] < g.distances[u]).sum())
               for u, v in g.graph.edges)


def balaban_index(g):
    total = sum(1 / float(g.transmissions[u] * g.transmissions[v]) ** 0.5 for u, v in g.graph.edges)
    return g.size / (g.size - g.order + 2) * total


def average_distances(g):
    return [transmission / (g.order - 1) for transmission in g.transmissions]


def connected_pair(value):
    return lambda g: value(g) if g.is_connected and g.order > 1 else None


def is_integral(g):
    near = {int(round(eigenvalue)) for eigenvalue in g.eigenvalues}
    if any(min(abs(eigenvalue - k) for k in near) > 1e-4 for eigenvalue in g.eigenvalues):
        return False
    return sum(g.nullity(k) for k in near) == g.order


def is_self_complementary(g):
    other = nx.complement(g.graph)
    return g.size == other.number_of_edges() and nx.is_isomorphic(g.graph, other)


def degeneracy(g):
    """A subgraph of least degree k is what is left when smaller degrees are taken away."""
    rest, largest = g.graph.copy(), 0
    while rest:
        v = min(rest, key=rest.degree)
        largest = max(largest, rest.degree[v])
        rest.remove_node(v)
    return largest


INTEGER = {
    'order': lambda g: g.order,
    'size': lambda g: g.size,
    'minimum-degree': from_order(1, lambda g: min(g.degrees)),
    'maximum-degree': from_order(1, lambda g: max(g.degrees)),
    'triangles': lambda g: sum(nx.triangles(g.graph).values()) // 3,
    'components': lambda g: nx.number_connected_components(g.graph),
    'girth': hard('girth'),
    'diameter': connected(lambda g: int(g.eccentricities.max())),
    'radius': connected(lambda g: int(g.eccentricities.min())),
    'wiener-index': connected(lambda g: sum(g.pairs)),
    'clique-number': hard('clique_number'),
    'independence-number': hard('independence_number'),
    'chromatic-number': hard('chromatic_number'),
    'matching-number': hard('matching_number'),
    'vertex-connectivity': hard('vertex_connectivity'),
    'edge-connectivity': hard('edge_connectivity'),
    'automorphisms': lambda g: g.symmetry[0],
    'domination-number': hard('domination_number'),
    'total-domination-number': hard('total_domination_number'),
    'vertex-cover-number': hard('vertex_cover_number'),
    'edge-cover-number': hard('edge_cover_number'),
    'feedback-vertex-set-number': hard('feedback_vertex_set_number'),
    'chromatic-index': lambda g: Searches(g.graph).chromatic_index(),
    'treewidth': hard('treewidth'),
    'degeneracy': from_order(1, degeneracy),
    'circumference': hard('circumference'),
    'longest-path': hard('longest_path'),
    'longest-induced-path': hard('longest_induced_path'),
    'longest-induced-cycle': hard('longest_induced_cycle'),
    'cyclomatic-number': lambda g: g.size - g.order + nx.number_connected_components(g.graph),
    'spanning-trees': spanning_trees,
    'orbits': lambda g: g.symmetry[1],
    'cliques': hard('cliques'),
    'cycles': hard('cycles'),
    'complement-components': lambda g: nx.number_connected_components(nx.complement(g.graph)),
    'nullity': lambda g: g.nullity(),
    'rank': lambda g: g.order - g.nullity(),
    'determinant': lambda g: g.determinant(g.adjacency),
    'first-zagreb-index': lambda g: sum(d * d for d in g.degrees),
    'second-zagreb-index': lambda g: g.over_edges(lambda a, b: a * b),
    'szeged-index': connected(szeged_index),
    'eccentric-connectivity-index': connected(lambda g: int(np.dot(g.degrees, g.eccentricities))),
    'hyper-wiener-index': connected(lambda g: sum(d + d * d for d in g.pairs) // 2),
    'irregularity': lambda g: g.over_edges(lambda a, b: abs(a - b)),
    'bipartite': lambda g: nx.is_bipartite(g.graph),
    'regular': lambda g: len(set(g.degrees)) <= 1,
    'planar': lambda g: nx.check_planarity(g.graph)[0],
    'chordal': hard('chordal'),
    'claw-free': hard('claw_free'),
    'triangle-free': lambda g: not any(nx.triangles(g.graph).values()),
    'eulerian': lambda g: g.is_connected and all(d % 2 == 0 for d in g.degrees),
    'hamiltonian': hard('hamiltonian'),
    'traceable': hard('traceable'),
    'tree': lambda g: g.is_connected and g.size == g.order - 1,
    'self-complementary': is_self_complementary,
    'threshold': hard('threshold'),
    'bridge': lambda g: nx.has_bridges(g.graph),
    'biconnected': lambda g: g.order > 1 and nx.is_biconnected(g.graph),
    'integral': is_integral,
}

REAL = {
    'average-degree': from_order(1, lambda g: mean(g.degrees)),
    'average-distance': connected_pair(lambda g: mean(g.pairs)),
    'randic-index': lambda g: g.over_edges(lambda a, b: 1 / (a * b) ** 0.5),
    'spectral-radius': from_order(1, lambda g: g.eigenvalues[-1]),
    'energy': lambda g: abs(g.eigenvalues).sum(),
    'algebraic-connectivity': from_order(2, lambda g: g.laplacian_eigenvalues[1]),
    'density': from_order(2, lambda g: 2 * g.size / (g.order * (g.order - 1))),
    'smallest-eigenvalue': from_order(1, lambda g: g.eigenvalues[0]),
    'second-eigenvalue': from_order(2, lambda g: g.eigenvalues[-2]),
    'laplacian-radius': from_order(1, lambda g: g.laplacian_eigenvalues[-1]),
    'signless-laplacian-radius': from_order(1, lambda g: g.signless_eigenvalues[-1]),
    'signless-laplacian-smallest': from_order(1, lambda g: g.signless_eigenvalues[0]),
    'normalized-laplacian-second': from_order(2, lambda g: g.normalized_eigenvalues[1]),
    'distance-spectral-radius': connected(lambda g: g.distance_eigenvalues[-1]),
    'laplacian-energy': lambda g: sum(abs(x - 2 * g.size / g.order) for x in g.laplacian_eigenvalues),
    'signless-laplacian-energy': lambda g: sum(abs(x - 2 * g.size / g.order) for x in g.signless_eigenvalues),
    'distance-energy': connected(lambda g: abs(g.distance_eigenvalues).sum()),
    'estrada-index': lambda g: np.exp(g.eigenvalues).sum(),
    'harmonic-index': lambda g: g.over_edges(lambda a, b: 2 / (a + b)),
    'abc-index': lambda g: g.over_edges(lambda a, b: ((a + b - 2) / (a * b)) ** 0.5),
    'sum-connectivity-index': lambda g: g.over_edges(lambda a, b: 1 / (a + b) ** 0.5),
    'geometric-arithmetic-index': lambda g: g.over_edges(lambda a, b: 2 * (a * b) ** 0.5 / (a + b)),
    'kirchhoff-index': connected(kirchhoff_index),
    'harary-index': connected(lambda g: sum(1 / d for d in g.pairs)),
    'balaban-index': connected(balaban_index),
    'degree-variance': from_order(1, lambda g: mean([d * d for d in g.degrees]) - mean(g.degrees) ** 2),
    'average-eccentricity': connected(lambda g: mean([int(e) for e in g.eccentricities])),
    'proximity': connected_pair(lambda g: min(average_distances(g))),
    'remoteness': connected_pair(lambda g: max(average_distances(g))),
}

ALL = {**INTEGER, **REAL}


# What takes the program too long for a test.
LEFT_OUT = {
    ('random of 25 with a third of the edges', 'treewidth'),
    ('random of 30 with a third of the edges', 'treewidth'),
}


def text(name, value):
    """The field of the table. What a real number is off zero by rounding is zero."""
    if value is BLANK:
        return ''
    if value is None:
        return 'NA'
    if name in INTEGER:
        return str(int(value))
    return '0' if abs(value) < 1e-11 else f'{value:.9g}'


def table(named_graphs):
    columns = []
    begin = time.monotonic()
    for title, graph in named_graphs:
        g = Graph(graph)
        column = [graph6(graph), title]
        for name in ALL:
            start = time.monotonic()
            column.append('' if (title, name) in LEFT_OUT else text(name, ALL[name](g)))
            if time.monotonic() - start > 5:
                print(f'{title or graph6(graph)} {name}: {time.monotonic() - start:.0f} s', file=sys.stderr, flush=True)
        columns.append(column)
        if len(columns) % 1000 == 0:
            print(f'{len(columns)} graphs, {time.monotonic() - begin:.0f} s', file=sys.stderr, flush=True)
    heads = ['graph', 'title'] + [f'{name}\t{"integer" if name in INTEGER else "real"}' for name in ALL]
    for head, row in zip(heads, zip(*columns)):
        if head != 'title' or any(row):
            print(head, *row, sep='\t')


def graph6(graph):
    return nx.to_graph6_bytes(graph, nodes=range(len(graph)), header=False).decode().strip()


def database(path):
    with open(path, encoding='ascii') as lines:
        for line in lines:
            name = line.split('\t')[0].strip()
            yield '', nx.from_graph6_bytes(name.encode())


def check(path):
    """Prints every value in which searches.py and bruteforce.py differ; True when there is none."""
    differences = 0
    for number, (_, graph) in enumerate(database(path)):
        if number % 20 and graph.number_of_nodes() > 5:
            continue
        for name, value in ALL.items():
            values = {text(name, value(Graph(graph, is_small))) for is_small in (True, False)}
            if len(values) != 1:
                differences += 1
                print(graph6(graph), name, *values)
    return differences == 0


# What a user of networkx calls.
NETWORKX = {
    'order': nx.number_of_nodes,
    'size': nx.number_of_edges,
    'density': nx.density,
    'triangles': lambda g: sum(nx.triangles(g).values()) // 3,
    'components': nx.number_connected_components,
    'girth': nx.girth,
    'diameter': nx.diameter,
    'radius': nx.radius,
    'average-distance': nx.average_shortest_path_length,
    'wiener-index': nx.wiener_index,
    'hyper-wiener-index': nx.hyper_wiener_index,
    'clique-number': lambda g: max(map(len, nx.find_cliques(g))),
    'independence-number': lambda g: max(map(len, nx.find_cliques(nx.complement(g)))),
    'cliques': lambda g: sum(1 for _ in nx.find_cliques(g)),
    'matching-number': lambda g: len(nx.max_weight_matching(g, maxcardinality=True)),
    'edge-cover-number': lambda g: len(nx.min_edge_cover(g)) if len(g) > 1 else None,
    'vertex-connectivity': nx.node_connectivity,
    'edge-connectivity': lambda g: nx.edge_connectivity(g) if len(g) > 1 else 0,
    'degeneracy': lambda g: max(nx.core_number(g).values()),
    'cycles': lambda g: sum(1 for _ in nx.simple_cycles(g)),
    'longest-induced-cycle': lambda g: max(map(len, nx.chordless_cycles(g)), default=None),
    'spanning-trees': nx.number_of_spanning_trees,
    'spectral-radius': lambda g: max(nx.adjacency_spectrum(g).real),
    'smallest-eigenvalue': lambda g: min(nx.adjacency_spectrum(g).real),
    'algebraic-connectivity': lambda g: nx.laplacian_spectrum(g)[1] if len(g) > 1 else None,
    'laplacian-radius': lambda g: nx.laplacian_spectrum(g)[-1],
    'normalized-laplacian-second': lambda g: nx.normalized_laplacian_spectrum(g)[1] if len(g) > 1 else None,
    'estrada-index': nx.estrada_index,
    'kirchhoff-index': nx.effective_graph_resistance,
    'bipartite': nx.is_bipartite,
    'regular': nx.is_regular,
    'planar': nx.is_planar,
    'chordal': nx.is_chordal,
    'eulerian': nx.is_eulerian,
    'tree': nx.is_tree,
    'threshold': is_threshold_graph,
    'bridge': nx.has_bridges,
    'biconnected': nx.is_biconnected,
    'automorphisms': lambda g: sum(1 for _ in nx.isomorphism.GraphMatcher(g, g).isomorphisms_iter()),
    'self-complementary': lambda g: nx.is_isomorphic(g, nx.complement(g)),
}


def print_times(path):
    every = [graph for _, graph in database(path)]
    some = every[::max(1, len(every) // 2000)][:2000]
    for name in ALL:
        if name in NETWORKX:
            start = time.process_time()
            for graph in some:
                NETWORKX[name](graph)
            print(f'{name}\t{time.process_time() - start:.3f} s', flush=True)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument('--named', action='store_true')
    parser.add_argument('--check', action='store_true')
    parser.add_argument('--time', action='store_true')
    parser.add_argument('database', nargs='?')
    options = parser.parse_args()
    if options.check:
        sys.exit(not check(options.database))
    if options.time:
        print_times(options.database)
    else:
        table(graphs.named() if options.named else database(options.database))


if __name__ == '__main__':
    main()
