#include "chromaticindex.h"
#include "chromaticnumber.h"
#include "connectivity.h"
#include "dominationnumber.h"
#include "feedbackvertexset.h"
#include "invariantgroups.h"
#include "treewidth.h"
#include "vertexset.h"

#include <algorithm>

namespace
{
bool hasIsolatedVertex(GraphFacts &facts)
{
    const std::vector<int> &degrees = facts.degrees();
    return std::find(degrees.begin(), degrees.end(), 0) != degrees.end();
}

InvariantValue cliqueNumber(GraphFacts &facts)
{
    return facts.cliqueNumber();
}

InvariantValue independenceNumber(GraphFacts &facts)
{
    return facts.independenceNumber();
}

InvariantValue fewestColours(GraphFacts &facts)
{
    return chromaticNumber(facts.graph(), facts.cliqueNumber());
}

InvariantValue matchingNumber(GraphFacts &facts)
{
    return facts.matchingNumber();
}

InvariantValue vertexCoverNumber(GraphFacts &facts)
{
    return facts.order() - facts.independenceNumber();
}

/// A largest matching, and an edge for every vertex that it leaves out (T. Gallai, 1959).
InvariantValue edgeCoverNumber(GraphFacts &facts)
{
    return hasIsolatedVertex(facts) ? std::nullopt : InvariantValue(facts.order() - facts.matchingNumber());
}

InvariantValue fewestDominators(GraphFacts &facts)
{
    return dominationNumber(facts.graph());
}

InvariantValue fewestTotalDominators(GraphFacts &facts)
{
    return hasIsolatedVertex(facts) ? std::nullopt : InvariantValue(totalDominationNumber(facts.graph()));
}

InvariantValue fewestFeedbackVertices(GraphFacts &facts)
{
    return feedbackVertexSetNumber(facts.graph());
}

InvariantValue fewestEdgeColours(GraphFacts &facts)
{
    return chromaticIndex(facts.graph());
}

InvariantValue smallestWidth(GraphFacts &facts)
{
    return facts.order() > 0 ? InvariantValue(treewidth(facts.graph())) : std::nullopt;
}

/// The largest degree at which a vertex goes, when one of the smallest degree goes again and again (D. W. Matula and L.
/// L. Beck, "Smallest-last ordering and clustering and graph coloring algorithms", 1983).
InvariantValue degeneracy(GraphFacts &facts)
{
    if (facts.order() == 0) {
        return std::nullopt;
    }
    const SmallGraph &graph = facts.graph();
    std::vector<int> degrees = facts.degrees();
    int largest = 0;
    for (VertexSet rest = allVertices(graph.order); rest != 0;) {
        const VerticesOf vertices(rest);
        const int next =
            *std::min_element(vertices.begin(), vertices.end(), [&](int u, int v) { return degrees[u] < degrees[v]; });
        largest = std::max(largest, degrees[next]);
        rest &= ~SmallGraph::bit(next);
        for (const int v : VerticesOf(graph.rows[next])) {
            --degrees[v];
        }
    }
    return largest;
}

InvariantValue fewestSeparatingVertices(GraphFacts &facts)
{
    return vertexConnectivity(facts.graph());
}

InvariantValue fewestSeparatingEdges(GraphFacts &facts)
{
    return edgeConnectivity(facts.graph());
}
} // namespace

std::vector<Invariant> subsetInvariants()
{
    const char *const group = "Sets of vertices and edges";
    return {
        {"clique-number", group, "largest number of mutually adjacent vertices", "", cliqueNumber},
        {"independence-number", group, "largest number of mutually non-adjacent vertices", "", independenceNumber},
        {"chromatic-number", group, "smallest number of colours of a proper vertex colouring", "", fewestColours},
        {"chromatic-index", group, "smallest number of colours of a proper edge colouring",
         "V. G. Vizing, \"On an estimate of the chromatic class of a p-graph\", 1964", fewestEdgeColours},
        {"matching-number", group, "largest number of edges without common vertices", "", matchingNumber},
        {"vertex-cover-number", group, "smallest number of vertices that meet every edge", "", vertexCoverNumber},
        {"edge-cover-number", group,
         "smallest number of edges that meet every vertex; NA with a vertex without neighbours",
         "T. Gallai, \"Über extreme Punkt- und Kantenmengen\", 1959", edgeCoverNumber},
        {"domination-number", group,
         "smallest number of vertices such that each of the others is adjacent to one of them",
         "O. Ore, \"Theory of Graphs\", 1962", fewestDominators},
        {"total-domination-number", group,
         "smallest number of vertices such that each vertex is adjacent to one of them; NA with a vertex without "
         "neighbours",
         "E. J. Cockayne, R. M. Dawes and S. T. Hedetniemi, \"Total domination in graphs\", 1980",
         fewestTotalDominators},
        {"feedback-vertex-set-number", group, "smallest number of vertices that meet every cycle",
         "L. W. Beineke and R. C. Vandell, \"Decycling graphs\", 1997", fewestFeedbackVertices},
        {"treewidth", group, "smallest width of a tree decomposition; NA without vertices",
         "N. Robertson and P. D. Seymour, \"Graph minors. II. Algorithmic aspects of tree-width\", 1986",
         smallestWidth},
        {"degeneracy", group, "largest minimum degree of a subgraph; NA without vertices",
         "D. R. Lick and A. T. White, \"k-degenerate graphs\", 1970", degeneracy},
        {"vertex-connectivity", group, "smallest number of vertices that disconnect the graph or leave one", "",
         fewestSeparatingVertices},
        {"edge-connectivity", group, "smallest number of edges that disconnect the graph; 0 below two vertices", "",
         fewestSeparatingEdges},
    };
}
