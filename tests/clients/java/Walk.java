import java.io.PrintStream;
import java.net.URI;
import java.nio.charset.StandardCharsets;
import java.util.ArrayDeque;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.Deque;
import java.util.HashSet;
import java.util.List;
import java.util.Set;
import java.util.stream.Stream;
import javax.security.auth.Subject;
import org.metricshub.wbem.javax.cim.CIMDataType;
import org.metricshub.wbem.javax.cim.CIMInstance;
import org.metricshub.wbem.javax.cim.CIMObjectPath;
import org.metricshub.wbem.javax.cim.CIMProperty;
import org.metricshub.wbem.javax.cim.UnsignedInteger32;
import org.metricshub.wbem.javax.wbem.CloseableIterator;
import org.metricshub.wbem.javax.wbem.WBEMException;
import org.metricshub.wbem.javax.wbem.client.EnumerateResponse;
import org.metricshub.wbem.javax.wbem.client.PasswordCredential;
import org.metricshub.wbem.javax.wbem.client.UserPrincipal;
import org.metricshub.wbem.javax.wbem.client.WBEMClient;
import org.metricshub.wbem.javax.wbem.client.WBEMClientConstants;
import org.metricshub.wbem.javax.wbem.client.WBEMClientFactory;
import org.metricshub.wbem.sblim.cimclient.WBEMConfigurationProperties;

/**
 * Walks a CIM server as a Java management product does: enumerates, and from every object that comes
 * back asks on, with all four association operations, by the very path that the server gave; whole or
 * by pulled enumerations, with each of the library's parsers, as POST or M-POST.
 */
public final class Walk {
    private static final String USAGE =
        "usage: java -cp LIBRARY Walk.java [--json] [--user NAME:PASSWORD] [--mode MODE]... URL NAMESPACE...\n\n"
        + "MODE is PARSER,METHOD,WAY: SAX, PULL or DOM; POST or M-POST; whole or pulled. Without --mode all\n"
        + "twelve are walked. Prints a line for each mode and namespace, with --json one for each call:\n"
        + "[mode, namespace asked, operation, asked of, answer, status]. Ends with 1 if a call failed.";
    private static final List<String> ROOTS = List.of("CIM_Namespace", "CIM_RegisteredProfile");
    private static final UnsignedInteger32 FIRST_PIECE = new UnsignedInteger32(1);
    private static final UnsignedInteger32 PIECE = new UnsignedInteger32(2);
    private static final UnsignedInteger32 PATIENCE = new UnsignedInteger32(30); // seconds between two pulls

    private final String url;
    private final String user;
    private final boolean json;
    private final PrintStream out = new PrintStream(System.out, false, StandardCharsets.UTF_8);

    private Walk(String url, String user, boolean json) {
        this.url = url;
        this.user = user;
        this.json = json;
    }

    public static void main(String[] arguments) throws Exception {
        Deque<String> rest = new ArrayDeque<>(Arrays.asList(arguments));
        List<String> modes = new ArrayList<>();
        boolean json = false;
        String user = null;
        while (!rest.isEmpty() && rest.peek().startsWith("--")) {
            switch (rest.pop()) {
                case "--json": json = true; break;
                case "--user": user = rest.pop(); break;
                case "--mode": modes.add(rest.pop()); break;
                default: rest.clear();
            }
        }
        if (rest.size() < 2) {
            System.err.println(USAGE);
            System.exit(2);
        }
        if (modes.isEmpty()) {
            modes = allModes();
        }
        Walk walk = new Walk(rest.pop(), user, json);
        int failed = 0;
        for (String mode : modes) {
            failed += walk.walk(mode, rest);
        }
        walk.out.flush();
        System.exit(failed == 0 ? 0 : 1);
    }

    private static List<String> allModes() {
        List<String> modes = new ArrayList<>();
        for (String parser : List.of("SAX", "PULL", "DOM")) {
            for (String method : List.of("POST", "M-POST")) {
                for (String way : List.of("whole", "pulled")) {
                    modes.add(String.join(",", parser, method, way));
                }
            }
        }
        return modes;
    }

    /** Walks each namespace; returns how many calls failed. */
    private int walk(String mode, Iterable<String> namespaces) throws WBEMException {
        String[] parts = mode.split(",");
        WBEMClient client = WBEMClientFactory.getClient(WBEMClientConstants.PROTOCOL_CIMXML);
        client.setProperty(WBEMConfigurationProperties.CIMXML_PARSER, parts[0]);
        client.setProperty(WBEMConfigurationProperties.HTTP_USE_MPOST, String.valueOf(parts[1].equals("M-POST")));
        client.setProperty(WBEMConfigurationProperties.SSL_CLIENT_PEER_VERIFICATION, "true");
        client.initialize(server(), subject(), null);
        int failed = 0;
        try {
            for (String namespace : namespaces) {
                Questions questions = parts[2].equals("pulled") ? new Pulled(client) : new Whole(client);
                Follower follower = new Follower(mode, questions);
                follower.follow(namespace);
                failed += follower.failed;
                if (!json) {
                    out.printf("%-18s %-15s %d calls, %d failed; %d objects reached%n", mode, namespace,
                        follower.calls, follower.failed, follower.seen.size());
                }
            }
        } finally {
            client.close();
        }
        return failed;
    }

    private CIMObjectPath server() {
        URI place = URI.create(url);
        return new CIMObjectPath(place.getScheme(), place.getHost(), String.valueOf(place.getPort()), null, null, null);
    }

    private Subject subject() {
        Subject subject = new Subject();
        if (user != null) {
            String[] parts = user.split(":", 2);
            subject.getPrincipals().add(new UserPrincipal(parts[0]));
            subject.getPrivateCredentials().add(new PasswordCredential(parts[1]));
        }
        return subject;
    }

    /** One walk: what was seen, and what is still to be asked. */
    private final class Follower {
        private final String mode;
        private final Questions questions;
        private final Set<String> seen = new HashSet<>();
        private final Set<String> classes = new HashSet<>();
        private final Deque<CIMObjectPath> waiting = new ArrayDeque<>();
        private int calls;
        private int failed;

        Follower(String mode, Questions questions) {
            this.mode = mode;
            this.questions = questions;
        }

        void follow(String namespace) {
            for (String name : ROOTS) {
                enumerate(new CIMObjectPath(null, null, null, namespace, name, null));
            }
            while (!waiting.isEmpty()) {
                CIMObjectPath path = waiting.pop();
                enumerate(new CIMObjectPath(null, null, null, path.getNamespace(), path.getObjectName(), null));
                call("GetInstance", path, () -> List.of(questions.client.getInstance(path, false, false, null)));
                if (isAssociation(path)) {
                    continue;
                }
                call("AssociatorNames", path, () -> questions.associatorNames(path));
                call("Associators", path, () -> questions.associators(path));
                call("ReferenceNames", path, () -> questions.referenceNames(path));
                call("References", path, () -> questions.references(path));
            }
            questions.last(this, namespace);
        }

        private void enumerate(CIMObjectPath of) {
            if (classes.add(of.toString().toLowerCase())) {
                call("EnumerateInstanceNames", of, () -> questions.names(of));
                call("EnumerateInstances", of, () -> questions.instances(of));
            }
        }

        /** Asks, tells what came, and remembers the paths in it, which are asked later. */
        void call(String operation, CIMObjectPath asked, Question question) {
            List<?> answer = List.of();
            Object status = 0;
            calls++;
            try {
                answer = question.ask();
            } catch (WBEMException error) {
                status = error.getID();
            } catch (RuntimeException error) {
                status = error.toString();
            }
            if (!status.equals(0)) {
                failed++;
            }
            if (json) {
                out.println(Json.text(Arrays.asList(mode, asked.getNamespace(), operation, asked, answer, status)));
            } else if (!status.equals(0)) {
                out.printf("%s %s %s: %s%n", mode, operation, asked, status);
            }
            for (Object found : answer) {
                CIMObjectPath path = found instanceof CIMInstance ? ((CIMInstance) found).getObjectPath()
                    : (CIMObjectPath) found;
                if (seen.add(path.toString().replaceFirst("^//[^/]*", "")) && askable(path)) {
                    waiting.add(path);
                }
            }
        }
    }

    /** Whether the library can send a path: it refuses one with a reference that has no namespace. */
    private static boolean askable(CIMObjectPath path) {
        return ends(path).allMatch(end -> end.getNamespace() != null && !end.getNamespace().isEmpty() && askable(end));
    }

    /** Whether an object is an association, which is got, and not asked on from. */
    private static boolean isAssociation(CIMObjectPath path) {
        return ends(path).findAny().isPresent();
    }

    private static Stream<CIMObjectPath> ends(CIMObjectPath path) {
        return Arrays.stream(path.getKeys()).map(CIMProperty::getValue).filter(CIMObjectPath.class::isInstance)
            .map(CIMObjectPath.class::cast);
    }

    private interface Question {
        List<?> ask() throws WBEMException;
    }

    /** The questions of a walk, in one way of asking. */
    private abstract static class Questions {
        final WBEMClient client;

        Questions(WBEMClient client) {
            this.client = client;
        }

        abstract List<?> names(CIMObjectPath of) throws WBEMException;

        abstract List<?> instances(CIMObjectPath of) throws WBEMException;

        abstract List<?> associatorNames(CIMObjectPath of) throws WBEMException;

        abstract List<?> associators(CIMObjectPath of) throws WBEMException;

        abstract List<?> referenceNames(CIMObjectPath of) throws WBEMException;

        abstract List<?> references(CIMObjectPath of) throws WBEMException;

        /** What is asked once, when everything is followed. */
        void last(Follower follower, String namespace) { }

        /** All of an answer. What breaks it off is thrown by the iterator wrapped. */
        static <T> List<T> all(CloseableIterator<T> answer) throws WBEMException {
            List<T> found = new ArrayList<>();
            try {
                while (answer.hasNext()) {
                    found.add(answer.next());
                }
                if (answer.getWBEMException() != null) {
                    throw answer.getWBEMException();
                }
            } finally {
                answer.close();
            }
            return found;
        }
    }

    private static final class Whole extends Questions {
        Whole(WBEMClient client) {
            super(client);
        }

        @Override List<?> names(CIMObjectPath of) throws WBEMException {
            return all(client.enumerateInstanceNames(of));
        }

        @Override List<?> instances(CIMObjectPath of) throws WBEMException {
            return all(client.enumerateInstances(of, true, false, false, null));
        }

        @Override List<?> associatorNames(CIMObjectPath of) throws WBEMException {
            return all(client.associatorNames(of, null, null, null, null));
        }

        @Override List<?> associators(CIMObjectPath of) throws WBEMException {
            return all(client.associatorInstances(of, null, null, null, null, false, null));
        }

        @Override List<?> referenceNames(CIMObjectPath of) throws WBEMException {
            return all(client.referenceNames(of, null, null));
        }

        @Override List<?> references(CIMObjectPath of) throws WBEMException {
            return all(client.referenceInstances(of, null, null, false, null));
        }
    }

    private static final class Pulled extends Questions {
        Pulled(WBEMClient client) {
            super(client);
        }

        private interface Next<T> {
            EnumerateResponse<T> pull(String context) throws WBEMException;
        }

        private static <T> List<T> rest(EnumerateResponse<T> first, Next<T> next) throws WBEMException {
            List<T> found = new ArrayList<>();
            EnumerateResponse<T> piece = first;
            found.addAll(all(piece.getResponses()));
            while (!piece.isEnd()) {
                piece = next.pull(piece.getContext());
                found.addAll(all(piece.getResponses()));
            }
            return found;
        }

        private List<CIMObjectPath> restOfPaths(CIMObjectPath of, EnumerateResponse<CIMObjectPath> first)
            throws WBEMException {
            return rest(first, context -> client.getInstancePaths(of, context, PIECE));
        }

        private List<CIMInstance> restOfInstances(CIMObjectPath of, EnumerateResponse<CIMInstance> first)
            throws WBEMException {
            return rest(first, context -> client.getInstancesWithPath(of, context, PIECE));
        }

        @Override List<?> names(CIMObjectPath of) throws WBEMException {
            return restOfPaths(of, client.enumerateInstancePaths(of, null, null, PATIENCE, false, FIRST_PIECE));
        }

        @Override List<?> instances(CIMObjectPath of) throws WBEMException {
            return restOfInstances(of,
                client.enumerateInstances(of, true, false, null, null, null, PATIENCE, false, FIRST_PIECE));
        }

        @Override List<?> associatorNames(CIMObjectPath of) throws WBEMException {
            return restOfPaths(of, client.associatorPaths(
                of, null, null, null, null, null, null, PATIENCE, false, FIRST_PIECE));
        }

        @Override List<?> associators(CIMObjectPath of) throws WBEMException {
            return restOfInstances(of, client.associators(
                of, null, null, null, null, false, null, null, null, PATIENCE, false, FIRST_PIECE));
        }

        @Override List<?> referenceNames(CIMObjectPath of) throws WBEMException {
            return restOfPaths(of, client.referencePaths(of, null, null, null, null, PATIENCE, false, FIRST_PIECE));
        }

        @Override List<?> references(CIMObjectPath of) throws WBEMException {
            return restOfInstances(of, client.references(
                of, null, null, false, null, null, null, PATIENCE, false, FIRST_PIECE));
        }

        /** Closes an enumeration early; what it has left cannot be pulled any more. */
        @Override void last(Follower follower, String namespace) {
            CIMObjectPath of = new CIMObjectPath(null, null, null, namespace, ROOTS.get(1), null);
            String[] context = new String[1];
            follower.call("CloseEnumeration", of, () -> {
                EnumerateResponse<CIMObjectPath> opened =
                    client.enumerateInstancePaths(of, null, null, PATIENCE, false, FIRST_PIECE);
                all(opened.getResponses());
                context[0] = opened.getContext();
                client.closeEnumeration(of, context[0]);
                return List.of();
            });
            follower.call("PullAfterClose", of, () -> {
                try {
                    client.getInstancePaths(of, context[0], PIECE);
                } catch (WBEMException error) {
                    if (error.getID() == WBEMException.CIM_ERR_INVALID_ENUMERATION_CONTEXT) {
                        return List.of();
                    }
                    throw error;
                }
                throw new IllegalStateException("a closed enumeration goes on");
            });
        }
    }

    /** What a call gives, as JSON: a path is [host, namespace, class, [[key, value]...]], an instance
     * [path, class, [[property, type, value]...]], and a value its text, a path, a list or null. */
    private static final class Json {
        static String text(Object value) {
            StringBuilder out = new StringBuilder();
            write(value, out);
            return out.toString();
        }

        private static void write(Object value, StringBuilder out) {
            if (value == null || value instanceof Integer) {
                out.append(value);
            } else if (value instanceof List) {
                char before = '[';
                for (Object each : (List<?>) value) {
                    out.append(before);
                    write(each, out);
                    before = ',';
                }
                out.append(before == '[' ? "[]" : "]");
            } else if (value instanceof Object[]) {
                write(Arrays.asList((Object[]) value), out);
            } else if (value instanceof CIMObjectPath) {
                write(path((CIMObjectPath) value), out);
            } else if (value instanceof CIMInstance) {
                CIMInstance instance = (CIMInstance) value;
                write(Arrays.asList(instance.getObjectPath(), instance.getClassName(),
                    properties(instance.getProperties())), out);
            } else {
                quote(value.toString(), out);
            }
        }

        private static List<Object> path(CIMObjectPath path) {
            String host = path.getHost();
            if (host != null && path.getPort() != null) {
                host += ":" + path.getPort();
            }
            List<Object> keys = new ArrayList<>();
            for (CIMProperty<?> key : path.getKeys()) {
                keys.add(Arrays.asList(key.getName(), key.getValue()));
            }
            return Arrays.asList(host, path.getNamespace(), path.getObjectName(), keys);
        }

        private static List<Object> properties(CIMProperty<?>[] properties) {
            List<Object> found = new ArrayList<>();
            for (CIMProperty<?> each : properties) {
                found.add(Arrays.asList(each.getName(), type(each.getDataType()), each.getValue()));
            }
            return found;
        }

        private static String type(CIMDataType type) {
            return type.getType() == CIMDataType.REFERENCE ? "reference" : type.toString();
        }

        private static void quote(String text, StringBuilder out) {
            out.append('"');
            for (char each : text.toCharArray()) {
                if (each == '"' || each == '\\') {
                    out.append('\\').append(each);
                } else if (each < ' ') {
                    out.append(String.format("\\u%04x", (int) each));
                } else {
                    out.append(each);
                }
            }
            out.append('"');
        }
    }
}
