"""What is hard in general, for graphs of any order: integer programs, satisfiability, and dynamic programming over the
edges. The methods are those of BruteForce; None stands for undefined, BLANK for what is not found within the limits.

The limits count steps, not time, so that every machine gives the same.
"""

from collections import defaultdict
from functools import cached_property

import networkx as nx
import numpy as np
from pysat.solvers import Glucose4
from scipy.optimize import Bounds, LinearConstraint, milp

BLANK = object()
MOST_STATES = 20_000  # of the dynamic programming, at one edge
MOST_CYCLES = 1_000_000
MOST_CONFLICTS = 20_000  # of a colouring
MOST_TRIALS = 1_000_000  # of induced paths
MOST_SETS = 100_000  # of eliminated vertices
MOST_STEPS = 20_000  # of the search for a spanning cycle
MOST_NODES = 1_000  # of the search tree of an integer program


class TooLong(Exception):
    """A limit is reached."""


class Program:
    """An integer program in variables that are 0 or 1."""

    def __init__(self):
        self.count = 0
        self.rows = []
        self.lower = []
        self.upper = []

    def variables(self, count):
        self.count += count
        return range(self.count - count, self.count)

    def require(self, terms, lower=-np.inf, upper=np.inf):
        """That the sum of factor times variable, over the pairs @p terms, is within the bounds."""
        self.rows.append(list(terms))
        self.lower.append(lower)
        self.upper.append(upper)

    def largest(self, variables):
        """The variables that are 1 in a solution with most of those given; None when there is no solution."""
        objective = np.zeros(self.count)
        objective[list(variables)] = -1
        matrix = np.zeros((len(self.rows), self.count))
        for row, terms in enumerate(self.rows):
            for factor, variable in terms:
                matrix[row, variable] = factor
        constraints = LinearConstraint(matrix, self.lower, self.upper) if self.rows else None
        result = milp(objective, integrality=np.ones(self.count), bounds=Bounds(0, 1), constraints=constraints,
                      options={'mip_rel_gap': 0, 'node_limit': MOST_NODES})
        if result.status == 2:
            return None
        if result.status == 1:
            raise TooLong
        if result.status != 0:
            raise RuntimeError(result.message)
        return {variable for variable in range(self.count) if result.x[variable] > 0.5}


class Searches:
    """The answers for one graph of networkx on the vertices 0, 1, 2 ..."""

    def __init__(self, graph):
        self.graph = graph
        self.order = graph.number_of_nodes()
        self.edges = [tuple(sorted(edge)) for edge in graph.edges]

    def largest_set(self, constraints):
        """The size of a largest set of vertices that has at most so many of some others: pairs (vertices, most). None
        when there is none."""
        if self.order == 0:
            return 0
        program = Program()
        vertices = program.variables(self.order)
        for some, most in constraints:
            program.require([(1, v) for v in some], upper=most)
        largest = program.largest(vertices)
        return None if largest is None else len(largest)

    def girth(self):
        lengths = []
        rest = self.graph.copy()
        for u, v in self.edges:  # the shortest cycle through an edge
            rest.remove_edge(u, v)
            if nx.has_path(rest, u, v):
                lengths.append(1 + nx.shortest_path_length(rest, u, v))
        return min(lengths, default=None)

    def independence_number(self):
        return self.largest_set((clique, 1) for clique in nx.find_cliques(self.graph))

    def clique_number(self):
        return max(map(len, nx.find_cliques(self.graph))) if self.order else 0

    def vertex_cover_number(self):
        return self.order - self.largest_set((edge, 1) for edge in self.edges)

    def matching_number(self):
        return len(nx.max_weight_matching(self.graph, maxcardinality=True))

    def edge_cover_number(self):
        if self.order == 0:
            return 0
        if min(degree for _, degree in self.graph.degree) == 0:
            return None
        return len(nx.min_edge_cover(self.graph))

    def vertex_connectivity(self):
        return nx.node_connectivity(self.graph) if self.order else 0

    def edge_connectivity(self):
        return nx.edge_connectivity(self.graph) if self.order > 1 else 0

    def domination_number(self):
        return self.order - self.largest_set(([v, *self.graph[v]], self.graph.degree[v]) for v in self.graph)

    def total_domination_number(self):
        left_out = self.largest_set((self.graph[v], self.graph.degree[v] - 1) for v in self.graph)
        return None if left_out is None else self.order - left_out

    def feedback_vertex_set_number(self):
        """The vertices left over by a largest induced forest."""
        forests = [largest_forest(part) for part in self.components()]
        return BLANK if None in forests else self.order - sum(forests)

    # By satisfiability.

    def chromatic_number(self):
        if self.order == 0:
            return 0
        colours = max(len(clique) for clique in nx.find_cliques(self.graph))
        while (answer := self.is_colourable(self.graph, colours)) is False:
            colours += 1
        return BLANK if answer is BLANK else colours

    def chromatic_index(self):
        if not self.edges:
            return 0
        lines = nx.convert_node_labels_to_integers(nx.line_graph(self.graph))
        most = max(degree for _, degree in self.graph.degree)
        # V. G. Vizing, "On an estimate of the chromatic class of a p-graph" (1964): one more is enough. More edges
        # than so many matchings have are not for a search (the overfull graphs).
        if len(self.edges) > most * (self.order // 2):
            return most + 1
        answer = self.is_colourable(lines, most)
        return BLANK if answer is BLANK else most if answer else most + 1

    @staticmethod
    def is_colourable(graph, colours):
        def colouring(v, colour):
            return v * colours + colour + 1

        with Glucose4() as solver:
            for v in graph:
                solver.add_clause([colouring(v, colour) for colour in range(colours)])
            for u, v in graph.edges:
                for colour in range(colours):
                    solver.add_clause([-colouring(u, colour), -colouring(v, colour)])
            for colour, v in enumerate(max(nx.find_cliques(graph), key=len)):
                if colour == colours:
                    return False
                solver.add_clause([colouring(v, colour)])
            return within_budget(solver)

    def treewidth(self):
        """Between the degeneracy of minors and an elimination that fills in least, decided by sets."""
        if self.order == 0:
            return None
        widths = [self.treewidth_of(self.graph.subgraph(part)) for part in nx.biconnected_components(self.graph)]
        return BLANK if BLANK in widths else max(widths, default=0)

    def treewidth_of(self, graph):
        graph = nx.convert_node_labels_to_integers(graph)
        least = self.least_width(graph)
        width = nx.approximation.treewidth_min_fill_in(graph)[0]
        if nx.is_chordal(graph):
            return max(len(clique) for clique in nx.find_cliques(graph)) - 1
        while width > least:
            answer = has_width(graph, width - 1)
            if answer is BLANK:
                return BLANK
            if not answer:
                break
            width -= 1
        return width

    @staticmethod
    def least_width(graph):
        """The largest least degree met while a vertex of least degree is contracted into the neighbour with which it
        has the fewest neighbours in common (H. L. Bodlaender and A. M. C. A. Koster, "Treewidth computations II",
        2011)."""
        graph = nx.Graph(graph)
        least = 0
        while graph.number_of_nodes() > 1:
            v = min(graph, key=graph.degree)
            least = max(least, graph.degree[v])
            if graph.degree[v]:
                near = min(graph[v], key=lambda u: len(set(graph[u]) & set(graph[v])))
                graph.add_edges_from((near, u) for u in list(graph[v]) if u != near)
            graph.remove_node(v)
        return least

    # Paths and cycles.

    def blocks(self):
        """Those with a cycle; a cycle is in one of them."""
        return [relabelled(self.graph, part) for part in nx.biconnected_components(self.graph) if len(part) > 2]

    def components(self):
        return [relabelled(self.graph, part) for part in nx.connected_components(self.graph)]

    @cached_property
    def cycle_counts(self):
        return [cycles_by_length(block) for block in self.blocks()]

    def cycles(self):
        if None in self.cycle_counts:
            return BLANK
        count = sum(sum(counts.values()) for counts in self.cycle_counts)
        return count if count <= MOST_CYCLES else BLANK

    def circumference(self):
        return self.longest_cycle

    @cached_property
    def longest_cycle(self):
        return max((longest_cycle(block) if counts is None else max(counts)
                    for block, counts in zip(self.blocks(), self.cycle_counts)), default=None)

    def hamiltonian(self):
        return self.order > 2 and self.longest_cycle == self.order

    def longest_path(self):
        return max(self.longest_paths, default=None)

    @cached_property
    def longest_paths(self):
        """Of the components: with one more vertex, adjacent to all, a path is a cycle."""
        longest = []
        for part in self.components():
            order = len(part)
            part.add_edges_from([(order, v) for v in part])
            if order > 1:
                counts = cycles_by_length(part)
                longest.append((longest_cycle(part) if counts is None else max(counts)) - 2)
            else:
                longest.append(0)
        return longest

    def traceable(self):
        return self.longest_paths == [self.order - 1]

    def longest_induced_path(self):
        return max((longest_induced(part, is_cycle=False) - 1 for part in self.components()), default=None)

    def longest_induced_cycle(self):
        return max((longest_induced(part, is_cycle=True) for part in self.blocks()), default=None)

    # Symmetry.

    def automorphisms_and_orbits(self):
        """The order of the group is the product of the lengths of the orbits along a chain of stabilizers."""
        count = 1
        fixed = []
        while cell := next(iter(open_cells(refined(self.graph, fixed))), None):
            v, *others = cell
            count *= 1 + sum(is_automorphic(self.graph, fixed + [v], fixed + [u]) for u in others)
            fixed.append(v)
        orbits = self.order
        for v, *others in open_cells(refined(self.graph, [])):
            found = [v]
            for u in others:
                if any(is_automorphic(self.graph, [first], [u]) for first in found):
                    orbits -= 1
                else:
                    found.append(u)
        return count, orbits

    def cliques(self):
        return sum(1 for _ in nx.find_cliques(self.graph)) if self.order else 0

    # Forbidden sub-graphs.

    def chordal(self):
        return nx.is_chordal(self.graph) if self.order else True

    def claw_free(self):
        return not any(Searches(nx.complement(self.graph.subgraph(self.graph[v]))).has_triangle() for v in self.graph)

    def has_triangle(self):
        return any(set(self.graph[u]) & set(self.graph[v]) for u, v in self.edges)

    def threshold(self):
        """V. Chvátal and P. L. Hammer (1977): isolated and universal vertices can be taken away until none is left."""
        graph = self.graph.copy()
        while graph:
            ends = [v for v, degree in graph.degree if degree in (0, len(graph) - 1)]
            if not ends:
                return False
            graph.remove_node(ends[0])
        return True


def relabelled(graph, part):
    return nx.convert_node_labels_to_integers(graph.subgraph(part))


def within_budget(solver):
    solver.conf_budget(MOST_CONFLICTS)
    answer = solver.solve_limited()
    return BLANK if answer is None else answer


def has_width(graph, width):
    """Whether an order of elimination meets no vertex with more neighbours: by the sets of vertices that may go first
    (H. L. Bodlaender et al., "On exact algorithms for treewidth", 2012)."""
    neighbours = [sum(1 << u for u in graph[v]) for v in range(len(graph))]

    def met(gone, v):
        """The neighbours of a vertex when others are gone."""
        reached, following = 1 << v, neighbours[v]
        while through := following & gone & ~reached:
            u = through.bit_length() - 1
            reached |= 1 << u
            following |= neighbours[u]
        return (following & ~gone & ~(1 << v)).bit_count()

    sets = {0}
    for _ in range(len(graph) - width - 1):
        sets = {gone | 1 << v for gone in sets for v in graph if not gone >> v & 1 and met(gone, v) <= width}
        if len(sets) > MOST_SETS:
            return BLANK
    return bool(sets)


def is_automorphic(graph, sources, images):
    """Whether an automorphism maps each vertex of a list to that of the other in the same place."""
    first = refined(graph, sources)
    second = refined(graph, images)
    if sorted(first.values()) != sorted(second.values()):
        return False
    cells = open_cells(first)
    if not cells:
        image = {colour: v for v, colour in second.items()}
        return all(graph.has_edge(image[first[u]], image[first[v]]) for u, v in graph.edges)
    v = cells[0][0]
    return any(is_automorphic(graph, sources + [v], images + [u]) for u in graph if second[u] == first[v])


def refined(graph, fixed):
    """The coarsest equitable colouring in which each vertex of a list has a colour of its own. The colours do not
    depend on the numbers of the vertices."""
    colours = {v: hash((0, fixed.index(v) if v in fixed else -1)) for v in graph}
    count = 0
    while len(set(colours.values())) > count:
        count = len(set(colours.values()))
        colours = {v: hash((colours[v], tuple(sorted(colours[u] for u in graph[v])))) for v in graph}
    return colours


def open_cells(colours):
    """The vertices that share their colour, the smallest such sets first."""
    cells = defaultdict(list)
    for v, colour in colours.items():
        cells[colour].append(v)
    return sorted((cell for cell in cells.values() if len(cell) > 1), key=len)


def cycles_by_length(graph):
    """How many cycles of each length there are; None when that takes too many states. The edges are taken one by one;
    a state says which vertices between those that are finished and those that are still untouched are ends of which
    paths, or inside of one (D. E. Knuth, "The Art of Computer Programming", 7.1.4, calls it simpath)."""
    vertices = frontier_order(graph)
    place = {v: i for i, v in enumerate(vertices)}
    edges = sorted((max(pair), min(pair)) for pair in ((place[u], place[v]) for u, v in graph.edges))
    last = {v: i for i, edge in enumerate(edges) for v in edge}
    first = {}
    for i, edge in enumerate(edges):
        for v in edge:
            first.setdefault(v, i)
    # A state: by vertex of the frontier its mate, itself when it is untouched, -1 when it is inside of a path.
    frontier = []
    states = {(): {0: 1}}
    found = defaultdict(int)
    for i, (u, v) in enumerate(edges):
        entering = [w for w in (u, v) if first[w] == i]
        frontier += entering
        at_u, at_v = frontier.index(u), frontier.index(v)
        leaving = [at for at, w in enumerate(frontier) if last[w] == i]
        following = {}

        def add(mates, counts, longer):
            # An end of a path that leaves is stuck.
            if any(mates[at] not in (-1, frontier[at]) for at in leaving):
                return
            key = tuple(mate for at, mate in enumerate(mates) if at not in leaving)
            target = following.setdefault(key, {})
            for length, count in counts.items():
                target[length + longer] = target.get(length + longer, 0) + count

        for key, counts in states.items():
            mates = key + tuple(entering)
            add(mates, counts, 0)
            mate_u, mate_v = mates[at_u], mates[at_v]
            if mate_u == -1 or mate_v == -1:
                continue
            if mate_u == v:  # closes a cycle, which is one of the graph when there is no other path
                if all(mate in (-1, w) for w, mate in zip(frontier, mates) if w not in (u, v)):
                    for length, count in counts.items():
                        found[length + 1] += count
                continue
            joined = list(mates)
            if mate_u != u:
                joined[at_u] = -1
            if mate_v != v:
                joined[at_v] = -1
            joined[frontier.index(mate_u)] = mate_v
            joined[frontier.index(mate_v)] = mate_u
            add(tuple(joined), counts, 1)
        frontier = [w for w in frontier if last[w] != i]
        states = following
        if len(states) > MOST_STATES:
            return None
    return found


def largest_forest(graph):
    """The most vertices of an induced forest; None when that takes too many states. The vertices are taken one by one;
    a state says which of those that wait for neighbours are in it, and which of these are joined by paths."""
    states = {(): 0}
    waiting = []
    taken = set()
    for v in frontier_order(graph):
        taken.add(v)
        near = [i for i, u in enumerate(waiting) if graph.has_edge(u, v)]
        candidates = waiting + [v]
        lasting = [i for i, u in enumerate(candidates) if not taken.issuperset(graph[u])]
        following = {}

        def add(parts, count):
            names = {-1: -1}
            key = tuple(names.setdefault(parts[i], len(names)) for i in lasting)
            following[key] = max(following.get(key, 0), count)

        for parts, count in states.items():
            add((*parts, -1), count)
            joined = [parts[i] for i in near if parts[i] != -1]
            if len(set(joined)) == len(joined):
                add((*[0 if part in joined else part for part in parts], 0), count + 1)
        states = following
        waiting = [candidates[i] for i in lasting]
        if len(states) > MOST_STATES:
            return None
    return states[()]


def frontier_order(graph):
    """The vertices in an order in which few taken ones wait for neighbours: the best of some greedy ones."""
    best, best_cost = [], None
    for start in sorted(graph, key=graph.degree)[:8]:
        order = []
        cost = 0
        left = {v: graph.degree[v] for v in graph}  # neighbours that are not taken
        waiting = set()
        while len(order) < len(graph):
            candidates = {u for v in waiting for u in graph[v]} - set(order) or set(graph) - set(order)

            def growth(v):
                return (left[v] > 0) - sum(1 for u in graph[v] if u in waiting and left[u] == 1)

            chosen = start if not order else min(candidates, key=lambda v: (growth(v), left[v], v))
            order.append(chosen)
            for u in graph[chosen]:
                left[u] -= 1
            waiting = {v for v in waiting | {chosen} if left[v]}
            cost += 3 ** len(waiting)
        if best_cost is None or cost < best_cost:
            best, best_cost = order, cost
    return best


def longest_cycle(graph):
    """The most edges of a cycle, by an integer program unless one through all vertices is found soon; separate cycles
    are ruled out when they come up."""
    if finds_spanning_cycle(graph):
        return len(graph)
    program = Program()
    order = graph.number_of_nodes()
    vertices = program.variables(order)
    edges = {tuple(sorted(edge)): variable
             for edge, variable in zip(graph.edges, program.variables(graph.number_of_edges()))}
    for v in vertices:
        program.require([(1, edges[min(u, v), max(u, v)]) for u in graph[v]] + [(-2, v)], 0, 0)
    program.require([(1, v) for v in vertices], lower=3)
    while True:
        solution = program.largest(vertices)
        chosen = nx.Graph(edge for edge, variable in edges.items() if variable in solution)
        parts = list(nx.connected_components(chosen))
        if len(parts) == 1:
            return len(chosen)
        for part in parts:
            # A cycle with a vertex in the part and one out of it uses two edges between.
            between = [(1, variable) for (u, v), variable in edges.items() if (u in part) != (v in part)]
            inside = min(part)
            for outside in set(graph) - part:
                program.require(between + [(-2, inside), (-2, outside)], lower=-2)


def finds_spanning_cycle(graph):
    """Whether a search that goes on to vertices with few free neighbours comes upon one."""
    steps = 0
    path = [0]
    free = set(graph) - {0}

    def extend():
        nonlocal steps
        steps += 1
        if not free:
            return graph.has_edge(path[-1], 0)
        if steps > MOST_STEPS:
            return False
        for v in sorted(free.intersection(graph[path[-1]]), key=lambda v: len(free.intersection(graph[v]))):
            path.append(v)
            free.remove(v)
            if extend():
                return True
            free.add(path.pop())
        return False

    return extend()


def longest_induced(graph, is_cycle):
    """The most vertices of an induced path or cycle: by trying them all or, when these are many, by an integer program.
    Several cycles in the place of one, or beside a path, are ruled out when they come up."""
    tried = longest_induced_by_trial(graph, is_cycle)
    if tried is not BLANK:
        return tried
    program = Program()
    vertices = program.variables(len(graph))
    edges = {tuple(sorted(edge)): variable
             for edge, variable in zip(graph.edges, program.variables(graph.number_of_edges()))}
    for (u, v), edge in edges.items():
        program.require([(1, edge), (-1, u)], upper=0)
        program.require([(1, edge), (-1, v)], upper=0)
        program.require([(1, edge), (-1, u), (-1, v)], lower=-1)
    for v in vertices:
        at = [(1, edges[min(u, v), max(u, v)]) for u in graph[v]]
        program.require(at + [(-2, v)], 0 if is_cycle else -np.inf, 0)
    if is_cycle:
        program.require([(1, v) for v in vertices], lower=3)
    else:
        program.require([(1, v) for v in vertices] + [(-1, edge) for edge in edges.values()], 1, 1)
    while True:
        solution = program.largest(vertices)
        chosen = graph.subgraph(v for v in vertices if v in solution)
        parts = list(nx.connected_components(chosen))
        if len(parts) == 1:
            return len(chosen)
        for part in parts:
            if chosen.subgraph(part).number_of_edges() < len(part):
                continue
            if is_cycle:
                for v in set(graph) - part:
                    program.require([(1, u) for u in part] + [(1, v)], upper=len(part))
            else:
                program.require([(1, u) for u in part], upper=len(part) - 1)


def longest_induced_by_trial(graph, is_cycle):
    neighbours = [set(graph[v]) for v in range(len(graph))]
    longest = 0
    trials = 0

    def extend(path, free):
        """@p free are the vertices that have no neighbour on the path but its end or, for a cycle, its start."""
        nonlocal longest, trials
        trials += 1
        if not is_cycle:
            longest = max(longest, len(path))
        if len(path) + len(free) <= longest or trials > MOST_TRIALS:
            return
        for v in neighbours[path[-1]] & free:
            if is_cycle and len(path) > 1 and v in neighbours[path[0]]:
                longest = max(longest, len(path) + 1)
            else:
                path.append(v)
                extend(path, free - neighbours[path[-2]] - {v} if len(path) > 2 or not is_cycle else free - {v})
                path.pop()

    for start in range(len(graph)):
        extend([start], {v for v in range(len(graph)) if v > start or v != start and not is_cycle})
    return BLANK if trials > MOST_TRIALS else longest
